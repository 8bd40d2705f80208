// A formula made ready: a straight line of steps that a machine carries out. What is to be done
// depends on the tokens and on what each name is, and never on values, so there is nothing to jump
// over. Errors do not end it.

#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "base/value.h"
#include "engine/registers.h"

namespace morandel {

enum class StepKind : std::uint8_t {
    unary,           // a sign or a function of one number
    StringFunction,  // a call that reads its further arguments
    atith,           // an operator of sums, products, powers, or "!"
    MUL_Atith,       // a relation
    first_argument,  // keeps the first argument of strcat
    further_argument,
    serror,  // a fault of the formula itself
};

struct Step {
    StepKind kind;
    char code;       // of the operator or function
    Register left;   // the only operand, or the number of the fault
    Register right;  // of calls: the number of the further arguments that they read, from 1
    Register result;
};

// Those of one call, by their places.
struct FurtherArguments {
    static constexpr Register none = Registers::not_given;
    Register values[ExtraArguments::kept] = {none, none, none, none};
};

struct Program {
    std::vector<Step> steps;
    std::vector<FurtherArguments> further_arguments{};  // of each call that has or reads any
    Register result = Registers::nothing;

    // Whether numbers are all that it reads and gives, and pending values nothing to it.
    bool is_numeric = true;
    ResultType type = type_integer;  // of the result, where it is numeric

    std::string_view lacks{};  // the first name without a value, in the formula

    // Keeps its room.
    void clear() {
        steps.clear();
        further_arguments.clear();
        is_numeric = true;
        lacks = {};
    }
};

}  // namespace morandel
