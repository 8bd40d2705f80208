// What all computation is of: values, the range of numbers, and errors.

#pragma once

#include <cmath>
#include <string_view>

#include <morandel/errors.h>
#include <morandel/result_type.h>

namespace morandel {

// An error of the table. To hosts that is ErrorNumber, since Error is the exception of prepared
// formulas there.
using Error = ErrorNumber;

// Both numbers of an operation must lie in the range that is computed in; a NaN does.
inline constexpr double range_bound = 1.7e+308;
inline bool in_range(double number) { return !(std::abs(number) > range_bound); }
// In it, and no NaN, whose sign depends on the order of operands.
inline bool is_ordinary(double number) { return std::abs(number) <= range_bound; }

// The outputs of a level. The text lies in the formula, in a parameter or in the
// evaluator's text arena, and lives until the next evaluation.
struct Value {
    double number = 0.0;
    std::string_view text;
    ResultType type = type_integer;
};

}  // namespace morandel
