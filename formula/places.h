// A walk of the levels that notes where in the formula the operator or function of each step
// stands. It is made only when that is to be told.

#pragma once

#include <vector>

#include "engine/levels.h"
#include "engine/recorder.h"
#include "engine/token_reader.h"
#include "formula/report.h"

namespace morandel::formula {

// A reader of tokens that remembers the operators that are under way.
class NotingReader {
  public:
    explicit NotingReader(TokenReader& tokens) : m_tokens(tokens) {}

    [[nodiscard]] const Token& token() const { return m_tokens.token(); }
    [[nodiscard]] OperandKind operand() const { return m_tokens.operand(); }
    void get_token() { m_tokens.get_token(); }
    template <class Notes>
    Register may_miss_expression(Notes& recorder) {
        return recorder.noted(here(), [&] { return m_tokens.may_miss_expression(recorder); });
    }
    template <class Notes>
    Register may_miss_operand(Notes& recorder) {
        return recorder.noted(here(), [&] { return m_tokens.may_miss_operand(recorder); });
    }
    template <class Notes>
    void may_miss_close(Notes& recorder) {
        recorder.noted(here(), [&] {
            m_tokens.may_miss_close(recorder);
            return Registers::nothing;
        });
    }
    void take_operator() {
        m_operators.push_back(here());
        get_token();
    }
    int open() { return 0; }
    void close(int /*outer*/) {}

    [[nodiscard]] Extent here() const { return {token().begin, token().end}; }
    Extent last_operator() {
        const Extent place = m_operators.back();
        m_operators.pop_back();
        return place;
    }

  private:
    TokenReader& m_tokens;
    std::vector<Extent> m_operators;
};

// A recorder that notes a place for each step.
class NotingRecorder : public Recorder {
  public:
    NotingRecorder(Program& program, Registers& registers, NotingReader& source)
        : Recorder(program, registers), m_program(program), m_source(source) {}

    // For each step.
    [[nodiscard]] const std::vector<Extent>& places() const { return m_places; }

    // Calls what may record a step, which stands at that place.
    template <class Record>
    Register noted(Extent place, const Record& record) {
        const Register result = record();
        m_places.resize(m_program.steps.size(), place);
        return result;
    }

    Call begin_call(char code) {
        m_calls.push_back(m_source.here());
        return Recorder::begin_call(code);
    }
    Register end_call(Register value, Call outer) {
        const Extent place = m_calls.back();
        m_calls.pop_back();
        return noted(place, [&] { return Recorder::end_call(value, outer); });
    }
    void first_argument(Register value) {
        noted(here_or_call(), [&] { return Recorder::first_argument(value), value; });
    }
    void further_argument(std::size_t index, Register value) {
        noted(here_or_call(), [&] { return Recorder::further_argument(index, value), value; });
    }
    Register atith(char code, Register left, Register right) {
        return noted(m_source.last_operator(), [&] { return Recorder::atith(code, left, right); });
    }
    Register MUL_Atith(char code, Register left, Register right) {
        return noted(m_source.last_operator(),
                     [&] { return Recorder::MUL_Atith(code, left, right); });
    }

  private:
    [[nodiscard]] Extent here_or_call() const {
        return m_calls.empty() ? m_source.here() : m_calls.back();
    }

    Program& m_program;
    NotingReader& m_source;
    std::vector<Extent> m_calls;
    std::vector<Extent> m_places;
};

}  // namespace morandel::formula
