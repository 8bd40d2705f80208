// A walk of the levels that notes where in the formula the operator or function of each step
// stands. It is made only when that is to be told.

#pragma once

#include <vector>

#include "engine/levels.h"
#include "engine/recorder.h"
#include "engine/token_reader.h"
#include "formula/report.h"

namespace morandel::formula {

class NotingRecorder;

// A reader of tokens that remembers the operators that are under way.
class NotingReader {
  public:
    explicit NotingReader(TokenReader& tokens) : m_tokens(tokens) {}

    [[nodiscard]] const Token& token() const { return m_tokens.token(); }
    [[nodiscard]] OperandKind operand() const { return m_tokens.operand(); }
    void get_token() { m_tokens.get_token(); }
    Register may_miss_expression(NotingRecorder& recorder);
    Register may_miss_operand(NotingRecorder& recorder);
    void may_miss_close(NotingRecorder& recorder);
    void take_operator();
    int open() { return 0; }
    void close(int /*outer*/) {}

    [[nodiscard]] Extent here() const { return {token().begin, token().end}; }
    Extent last_operator();

  private:
    TokenReader& m_tokens;
    std::vector<Extent> m_operators;
};

// A recorder that notes a place for each step. What it does stands in a source of its own, so that
// the levels, which call one another for each parenthesis, need no more stack for it.
class NotingRecorder : public Recorder {
  public:
    NotingRecorder(Program& program, Registers& registers, NotingReader& source)
        : Recorder(program, registers), m_program(program), m_source(source) {}

    // For each step.
    [[nodiscard]] const std::vector<Extent>& places() const { return m_places; }

    Call begin_call(char code);
    Register end_call(Register value, Call outer);
    void first_argument(Register value);
    void further_argument(std::size_t index, Register value);
    Register atith(char code, Register left, Register right);
    Register MUL_Atith(char code, Register left, Register right);

    // Of the steps that were recorded since the last call.
    void note(Extent place) { m_places.resize(m_program.steps.size(), place); }

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
