// A check: a listener of the levels that takes the kind of each value in place of the value, and
// what it records. What differs from an evaluation: each operator, sign and function opens a step,
// whose position its faults carry, and a string parameter is no operand.

#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <morandel/checker.h>

#include "engine/evaluator.h"
#include "language/characters.h"
#include "language/functions.h"

namespace morandel {

// Works on the public fields of a checker and with its evaluator's tokens.
class Checking {
  public:
    explicit Checking(CExpressionCheck& face) : m_face(face), m_tokens(face.evaluator().tokens()) {}

    // What the levels ask of a source.
    [[nodiscard]] const Token& token() const { return m_tokens.token(); }
    void get_token() { m_tokens.get_token(); }
    [[nodiscard]] OperandKind operand() const {
        if (!token().is_constant()) return OperandKind::none;
        if (token().m_IsStringLiteral) return OperandKind::text;
        if (m_tokens.last_read() != LastRead::number) return OperandKind::none;
        return token().is(TokenClass::parameter) ? OperandKind::parameter : OperandKind::number;
    }
    int may_miss_expression(Checking& /*this*/) { return serror(Error::no_expression); }
    // A name without a value is an operand of any kind.
    int may_miss_operand(Checking& /*this*/) {
        ++m_face.m_tokenCount;
        if (!token().is(TokenClass::name)) return serror(Error::bad_expression);
        get_token();
        return kind_variable;
    }
    void may_miss_close(Checking& /*this*/) { serror(Error::unbalanced_parentheses); }
    // Its step opens at the token after it.
    void take_operator() {
        ++m_face.m_tokenCount;
        get_token();
        open_step();
    }
    int open() {
        ++m_face.m_tokenCount;
        m_comma_marks.reset();
        return 0;
    }
    void close(int /*outer*/) {}

    // What they tell a recorder.
    using Operand = int;
    static constexpr int nothing = kind_number;  // on the right of "!"
    int parameter(const Token& token) { return number(token); }
    int number(const Token& /*token*/) { return ++m_face.m_tokenCount, int{kind_number}; }
    int text(const Token& /*token*/) { return ++m_face.m_tokenCount, int{kind_text}; }
    char begin_call(char code) {
        ++m_face.m_tokenCount;
        open_step();
        return code;
    }
    void first_argument(int /*kind*/) {}
    void further_argument(std::size_t place, int kind);
    int end_call(int kind, char code);
    int atith(char code, int left, int right);
    int MUL_Atith(char code, int left, int right) { return atith(code, left, right); }
    void finish(int kind) { m_face.m_resultKind = kind; }

    void forget_arguments(std::size_t count);

    struct Step {
        std::uint16_t next_token = 0;
        int position = 0;
    };

    CExpressionCheck& m_face;
    TokenReader& m_tokens;
    std::vector<Step> m_positions;
    std::size_t m_arguments = 0;                 // parsed after a comma
    std::bitset<longest_formula> m_comma_marks;  // by place of the argument

  private:
    // At the token in hand. What makes lists longer stands apart from the levels, which call one
    // another for each parenthesis, so that they need no more stack for it.
    void open_step();
    void record(std::string_view name, int type, int index) {
        const auto step = static_cast<std::size_t>(m_face.m_step);
        m_face.m_current = {type, m_positions[step].position, index, std::string(name)};
        m_face.m_errors.push_back(m_face.m_current);
    }
    // Gives the kind of what is missing.
    int serror(Error error) {
        m_face.evaluator().faults().serror(error);
        return kind_open;
    }
    int CheckStringFunction(const FunctionRow& row, int kind);
    void CheckParameters(const FunctionRow& row, std::size_t commas);
};

}  // namespace morandel
