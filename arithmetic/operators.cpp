#include "arithmetic/operators.h"

#include <cmath>

#include "base/search.h"

namespace morandel {
namespace {

bool has_fraction(double value) {
    double whole = 0.0;
    return std::modf(value, &whole) != 0.0;
}

// A number and what it lacks, with twice the bits of either.
struct Precise {
    double number = 0.0;
    double rest = 0.0;
};

Precise square(double x) {
    const double number = x * x;
    return {number, product_error(x, x, number)};
}

Precise root(double x) {
    const double number = std::sqrt(x);
    const double square = number * number;
    const double rest = (x - square) - product_error(number, number, square);
    return {number, rest / (2.0 * number)};
}

Precise product(Precise a, Precise b) {
    const double number = a.number * b.number;
    return {number,
            product_error(a.number, b.number, number) + (a.number * b.rest + a.rest * b.number)};
}

// 0 where it does not round clearly.
double rounded(Precise value) {
    const double sum = value.number + value.rest;
    return rounds_clearly(sum, value.rest - (sum - value.number)) ? sum : 0.0;
}

}  // namespace

double library_power(double base, double exponent) {
#ifdef __MINGW32__
    // This C library multiplies whole powers up, with an error each time. Computed with more bits
    // and then rounded, they are what other systems give.
    return static_cast<double>(
        std::pow(static_cast<long double>(base), static_cast<long double>(exponent)));
#else
    // Compilers put a product or a root in the place of powers whose exponent they can tell.
    const volatile double hidden = exponent;
    return std::pow(base, hidden);
#endif
}

// C libraries take several times as long as products and a root do.
double power(double base, double exponent) {
    if (!has_halves(base)) return library_power(base, exponent);
    if (exponent == 2.0) {
        const Precise value = square(base);
        if (rounds_clearly(value.number, value.rest)) return value.number;
    } else if (exponent == 3.0) {
        if (const double value = rounded(product(square(base), {base})); value != 0.0) return value;
    } else if (base < 0.0) {
        return library_power(base, exponent);
    } else if (exponent == 0.5) {
        const Precise value = root(base);
        if (rounds_clearly(value.number, value.rest)) return value.number;
    } else if (exponent == 1.5) {
        if (const double value = rounded(product({base}, root(base))); value != 0.0) return value;
    } else if (exponent == 2.5) {
        const double value = rounded(product(square(base), root(base)));
        if (value != 0.0) return value;
    }
    return library_power(base, exponent);
}

double factorial(double value) {
    // Deliberate: 0! is 0, and what is negative stays as it is.
    double product = value;
    for (double factor = value - 1.0; factor > 0.0 && !std::isinf(product); factor -= 1.0) {
        product *= factor;
    }
    return product;
}

Error apply_factorial(double& value, double /*no_right_side*/) {
    const double factor = value;
    value = factorial(factor);
    if (has_fraction(factor)) return Error::factorial_of_fraction;
    return factor < 0.0 ? Error::factorial_of_negative : Error::none;
}

bool contains(std::string_view text, std::string_view piece) {
    return find_piece(text, piece) != std::string_view::npos;
}

}  // namespace morandel
