// A check: a listener of the levels that takes the kind of each value in place of the value, and
// what it records. What differs from an evaluation: each operator, sign and function opens a step,
// whose position its faults carry, and a string parameter is no operand.

#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
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
    [[nodiscard]] OperandKind operand() const;
    int may_miss_expression(Checking& /*this*/) { return serror(Error::no_expression); }
    int may_miss_operand(Checking& /*this*/);
    void may_miss_close(Checking& /*this*/) { serror(Error::unbalanced_parentheses); }
    void take_operator();
    int open();
    void close(int /*outer*/) {}

    // What they tell a recorder.
    using Operand = int;
    static constexpr int nothing = kind_number;  // on the right of "!"
    int parameter(const Token& token) { return number(token); }
    int number(const Token& /*token*/) { return ++m_face.m_tokenCount, kind_number; }
    int text(const Token& /*token*/) { return ++m_face.m_tokenCount, kind_text; }
    char begin_call(char code);
    void first_argument(int /*kind*/) {}
    void further_argument(std::size_t place, int kind);
    int end_call(int kind, char code);
    int atith(char code, int left, int right);
    int MUL_Atith(char code, int left, int right) { return atith(code, left, right); }
    void finish(int kind) { m_face.m_resultKind = kind; }

    void open_step();
    void record(std::string_view name, int type, int index);
    // Gives the kind of what is missing.
    int serror(Error error);
    int CheckStringFunction(const FunctionRow& row, int kind);
    void CheckParameters(const FunctionRow& row, std::size_t commas);
    void forget_arguments(int count);

    struct Step {
        std::uint16_t next_token = 0;
        int position = 0;
    };

    CExpressionCheck& m_face;
    TokenReader& m_tokens;
    std::vector<Step> m_positions;
    std::size_t m_arguments = 0;                 // parsed after a comma
    std::bitset<longest_formula> m_comma_marks;  // by place of the argument
};

}  // namespace morandel
