// The functions of the formula language: one row each. Tokenizer, type deduction, machine, checker,
// help and tests read this table.

#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include <morandel/checker.h>
#include <morandel/language.h>

#include "arithmetic/functions.h"
#include "language/operators.h"
#include "strfuncs/routines.h"

namespace morandel {

// What carries it out.
struct Body {
    constexpr Body(NumberFunction function) : number(function) {}
    constexpr Body(Routine function) : routine(function) {}

    NumberFunction number = nullptr;  // on a number alone
    Routine routine = nullptr;        // on all arguments
};

using enum CExpressionCheck::Kind;

// What the checker requires of a call and records where that is not met.
struct CheckRule {
    std::string_view kinds = {};  // of the arguments, other than the function's; '?' is not checked
    int result_kind = kind_number;
    std::optional<int> first_fault = {};  // other than the kind of the first argument
    std::string_view name = {};           // other than the function's
    bool closes_step = true;
    bool tells_error = true;  // where the first argument of a call that reads further ones is wrong
};

// Whether an operand of a kind can stand where another is expected.
constexpr bool fits(int kind, int expected) {
    return kind == kind_variable || (kind == kind_text) == (expected == kind_text);
}

struct FunctionRow : Function {
    constexpr FunctionRow(const Function& function, Body carrier, const CheckRule& rule = {})
        : Function(function), body(carrier), check(rule) {
        if (check.kinds.empty()) check.kinds = kinds;
        if (check.name.empty()) check.name = name;
    }

    // The kind of the argument with so many commas before it; -1 where it is not checked.
    [[nodiscard]] int kind_at(std::size_t commas) const;

    Body body;
    CheckRule check;
};

// How many arguments a call reads, by their kinds as Function has them.
struct ArgumentCounts {
    std::size_t fewest;
    std::size_t most;
};
ArgumentCounts argument_counts(std::string_view kinds);

extern const std::array<const FunctionRow*, code_limit> function_index;

// The row of a code; null for any other character.
inline const FunctionRow* function_of_code(char code) {
    const auto index = static_cast<unsigned char>(code);
    return index < code_limit ? function_index[index] : nullptr;
}

// Whether a call reads further arguments. What signs and functions of one number are given besides
// is read by nobody.
inline bool is_routine(char code) {
    const FunctionRow* row = function_of_code(code);
    return row != nullptr && row->body.routine != nullptr;
}

// What a sign or a function of one number gives: "int" alone gives an integer.
constexpr ResultType result_type(char code) { return code == 'o' ? type_integer : type_number; }

}  // namespace morandel
