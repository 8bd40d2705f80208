// The functions of one number, and those that a formula computes like operators.

#pragma once

#include <cmath>

#include "arithmetic/platform_functions.h"
#include "base/value.h"

namespace morandel {

// What an error leaves in the number is part of its meaning, since evaluation goes on.
using NumberFunction = Error (*)(double& x);

inline constexpr double tangent_guard = 1e-05;
inline constexpr double radians_per_degree = 0.017453292519943295;

inline double to_degrees(double radians) {
    constexpr double pi = 3.141592653589793;
    return radians * 180.0 / pi;
}

template <double (*function)(double)>
Error of_angle(double& x) {
    x = function(x * radians_per_degree);
    return Error::none;
}
inline constexpr NumberFunction sine = of_angle<platform::sine>;
inline constexpr NumberFunction cosine = of_angle<platform::cosine>;

inline Error tangent(double& x) {
    const double angle = x * radians_per_degree;
    if (std::abs(platform::cosine(angle)) < tangent_guard) return Error::illegal_tangent;
    x = platform::tangent(angle);
    return Error::none;
}

inline Error cotangent(double& x) {
    const double angle = x * radians_per_degree;
    if (std::abs(platform::sine(angle)) < tangent_guard) return Error::illegal_cotangent;
    x = 1.0 / platform::tangent(angle);
    return Error::none;
}

inline Error square_root(double& x) {
    if (x < 0.0) return Error::negative_root;
    x = std::sqrt(x);
    return Error::none;
}

template <double (*function)(double)>
Error arc(double& x) {
    if (std::abs(x) > 1.0) return Error::arc_out_of_range;
    x = to_degrees(function(x));
    return Error::none;
}
inline constexpr NumberFunction arc_sine = arc<platform::arc_sine>;
inline constexpr NumberFunction arc_cosine = arc<platform::arc_cosine>;

inline Error arc_tangent(double& x) {
    x = to_degrees(platform::arc_tangent(x));
    return Error::none;
}

inline Error arc_cotangent(double& x) {
    x = to_degrees(1.5707963267948966 - platform::arc_tangent(x));
    return Error::none;
}

template <double (*function)(double)>
Error logarithm(double& x) {
    if (x <= 0.0) return Error::not_positive;
    x = function(x);
    return Error::none;
}
inline constexpr NumberFunction natural_logarithm = logarithm<platform::natural_logarithm>;
inline constexpr NumberFunction decimal_logarithm = logarithm<platform::decimal_logarithm>;

inline Error logical_not(double& x) {
    x = x == 0.0 ? 1.0 : 0.0;
    return Error::none;
}

Error integer_part(double& x);  // of the number rounded to six decimals
Error decimal_part(double& x);  // of the number rounded to fifteen decimals, without its sign

// The remainder of fmod, but 0 where a whole multiple of the divisor, rounded, is the dividend.
Error modulo(double& x, double divisor);

// Rounds half away from zero on the decimal text, whose runs of nines count as what they stand
// for, so 2.675 to two decimals is 2.68.
Error round_to_decimals(double& x, double decimals);

}  // namespace morandel
