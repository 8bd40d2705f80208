// What the operators do to values in hand: no tokens, no evaluator. Each leaves its result in the
// left side, also where it meets an error, since evaluation goes on.

#pragma once

#include <cmath>
#include <string_view>

#include "base/numbers.h"
#include "base/value.h"

namespace morandel {

using NumberOperator = Error (*)(double& left, double right);
using TextRelation = bool (*)(std::string_view left, std::string_view right);

double library_power(double base, double exponent);
double power(double base, double exponent);  // the same, faster where that is slow

// Deliberate: 0! is 0, and what is negative stays as it is.
Error factorial(double& value, double no_right_side);

// Whether a power that was rounded, and what was lost by that, leaves no doubt that C libraries
// round it to the same number. Of numbers that has_halves tells of they compute powers up to the
// third to within 33/64 of the last place; it is known of some. Else that is 9/16 of any power.
inline bool rounds_clearly(double rounded, double error) {
#ifdef __GLIBC__
    return rounded + error * (32.0 / 31.0) == rounded;
#else
    return rounded + error * (8.0 / 7.0) == rounded;
#endif
}

// Whether the halves of a number can be computed with, and with their products.
inline bool has_halves(double x) { return std::abs(x) > 1e-12 && std::abs(x) < 1e12; }

// What the standard library gives for two numbers, or one of the relations below: 1 or 0.
template <class Operation>
Error apply(double& left, double right) {
    left = static_cast<double>(Operation()(left, right));
    return Error::none;
}

inline constexpr double division_guard = 1e-14;

inline Error divide(double& left, double right) {
    if (right > -division_guard && right < division_guard) return Error::division_by_zero;
    left /= right;
    return left > range_bound ? Error::out_of_range : Error::none;
}

inline Error raise(double& left, double right) {
    left = right == 0.0 ? 1.0 : power(left, right);
    return Error::none;
}

// Deliberate: a NaN is neither less nor greater, and meets both of the first two.
// clang-format off
struct NotLess { bool operator()(double a, double b) const { return !(a < b); } };
struct NotGreater { bool operator()(double a, double b) const { return !(b < a); } };
// Deliberate: by the difference, so two equal infinities are not "=".
struct Greater { bool operator()(double a, double b) const { return a - b > 0.0; } };
struct Less { bool operator()(double a, double b) const { return a - b < 0.0; } };
struct Equal { bool operator()(double a, double b) const { return a - b == 0.0; } };
// clang-format on

bool contains(std::string_view text, std::string_view piece);
inline bool same_text(std::string_view a, std::string_view b) { return a == b; }

}  // namespace morandel
