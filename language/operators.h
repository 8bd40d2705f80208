// The operators of the formula language: one row each. Tokenizer, grammar check, levels, machine
// and checker read this table.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

#include "arithmetic/operators.h"

namespace morandel {

// Codes of the operators that are no single character; these are their own codes.
enum OperatorCode : char {
    code_like = 1,
    code_equal,
    code_and,
    code_or,
    code_ge,
    code_le,
    code_ne,
    code_negate,  // what "-" before an operand is called once it is recorded
};

// Where the levels look for an operator: level2, level3, and the rest in level4.
enum class Level : std::uint8_t { none, sum, product, power, factorial, relation };

struct Operator {
    std::string_view text;
    char code;
    Level level;
    NumberOperator number;  // carries it out on numbers,
    TextRelation texts;     // or on texts
    Error nothing_after;    // where the operand after it is missing
    char prefix = 0;        // the sign or function that it is where an operand is due
    int left_fault = 1;     // what the checker records of an operand that does not fit
    int right_fault = 1;
};

// In the order in which the grammar check takes powers and relations. Deliberate: each is tried
// once, so "a like b and c" is accepted and "a and b like c" is not.
// Deliberate: where an operand is due, only the first byte of a word operator counts; like acts as
// left, equal as ctan, or as int. "!" records fault 0, and "or" fault 2 on its right.
// clang-format off
inline constexpr Operator operator_table[] = {
    // text    code        level             carried out by                     nothing after it                 prefix faults
    {"+",     '+',        Level::sum,       apply<std::plus<>>,          nullptr, Error::nothing_after_sum,        '+'},
    {"-",     '-',        Level::sum,       apply<std::minus<>>,         nullptr, Error::nothing_after_sum,        '-'},
    {"*",     '*',        Level::product,   apply<std::multiplies<>>,    nullptr, Error::nothing_after_product},
    {"/",     '/',        Level::product,   divide,                      nullptr, Error::nothing_after_product},
    {"!",     '!',        Level::factorial, factorial,                   nullptr, Error::none,                     0,   0},
    {"^",     '^',        Level::power,     raise,                       nullptr, Error::nothing_after_power},
    {"like",  code_like,  Level::relation,  nullptr,                    contains, Error::nothing_after_like,       'l', 2, 2},
    {"equal", code_equal, Level::relation,  nullptr,                   same_text, Error::nothing_after_equal_word, 'e', 2, 2},
    {"and",   code_and,   Level::relation,  apply<std::logical_and<>>,   nullptr, Error::nothing_after_and},
    {"or",    code_or,    Level::relation,  apply<std::logical_or<>>,    nullptr, Error::nothing_after_or,         'o', 1, 2},
    {">=",    code_ge,    Level::relation,  apply<NotLess>,              nullptr, Error::nothing_after_not_less},
    {"<=",    code_le,    Level::relation,  apply<NotGreater>,           nullptr, Error::nothing_after_not_greater},
    {"<>",    code_ne,    Level::relation,  apply<std::not_equal_to<>>,  nullptr, Error::nothing_after_not_equal},
    {"<",     '<',        Level::relation,  apply<Less>,                 nullptr, Error::nothing_after_less},
    {">",     '>',        Level::relation,  apply<Greater>,              nullptr, Error::nothing_after_greater},
    {"=",     '=',        Level::relation,  apply<Equal>,                nullptr, Error::nothing_after_equal},
};
// clang-format on

// All codes of the language, also those of functions, are below this.
inline constexpr std::size_t code_limit = 128;

// By code: the place in the table, from 1; 0 for what is no operator.
inline constexpr auto operator_index = [] {
    std::array<std::uint8_t, code_limit> index{};
    std::uint8_t place = 0;
    for (const Operator& row : operator_table) {
        auto& entry = index[static_cast<unsigned char>(row.code)];
        if (entry != 0) throw "two operators of one code";
        entry = ++place;
    }
    return index;
}();

constexpr const Operator* operator_of_code(char code) {
    const auto index = static_cast<unsigned char>(code);
    if (index >= code_limit || operator_index[index] == 0) return nullptr;
    return &operator_table[operator_index[index] - 1];
}

}  // namespace morandel
