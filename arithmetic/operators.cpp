#include "arithmetic/operators.h"

#include <optional>

#include "base/search.h"

namespace morandel {
namespace {

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
    const double rest =
        product_error(a.number, b.number, number) + (a.number * b.rest + a.rest * b.number);
    const double sum = number + rest;
    return {sum, rest - (sum - number)};
}

// What products and a root give; C libraries take several times as long.
std::optional<Precise> quick_power(double base, double exponent) {
    if (exponent == 2.0) return square(base);
    if (exponent == 3.0) return product(square(base), {base});
    if (base < 0.0) return std::nullopt;
    if (exponent == 0.5) return root(base);
    if (exponent == 1.5) return product({base}, root(base));
    if (exponent == 2.5) return product(square(base), root(base));
    return std::nullopt;
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

double power(double base, double exponent) {
    const auto value = has_halves(base) ? quick_power(base, exponent) : std::nullopt;
    const bool is_clear = value && rounds_clearly(value->number, value->rest);
    return is_clear ? value->number : library_power(base, exponent);
}

Error factorial(double& value, double /*no_right_side*/) {
    const double last = value;
    for (double factor = last - 1.0; factor > 0.0 && !std::isinf(value); factor -= 1.0) {
        value *= factor;
    }
    if (last != std::trunc(last)) return Error::factorial_of_fraction;
    return last < 0.0 ? Error::factorial_of_negative : Error::none;
}

bool contains(std::string_view text, std::string_view piece) {
    return find_piece(text, piece) != std::string_view::npos;
}

}  // namespace morandel
