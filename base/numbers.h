// Numbers to text and back, and what is exact about them. Nothing here asks the host's locale, and
// every platform gives the same bits.

#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <string_view>

#include "base/floating_point.h"
#include "base/value.h"

namespace morandel {

// The number at the start of a text: white space, a sign, then the longest decimal, hexadecimal,
// inf or nan that stands there; 0.0 where there is none. What is too large reads as infinity,
// what is too small as zero.
double text_to_number(std::string_view text);

// Reads digits with at most one point, as 5. is and .5 is not, and gives the place after them.
// Where the value is no short whole number, that is computed in the environment.
const char* read_digits(const char* next, double& value, DefaultFloatingPointIfNeeded& environment);

// Room for the longest double in fixed notation with 20 decimals.
using NumberBuffer = std::array<char, 340>;

// A number with exactly so many decimals (0 to 20), correctly rounded: 2.5 with 3 is "2.500".
// The text lies in the buffer.
std::string_view format_fixed(double value, int decimals, NumberBuffer& buffer);

// A number as one digit, a point and 14 decimals, without the exponent: 1234.5 is
// "1.23450000000000". The text lies in the buffer.
std::string_view format_mantissa(double value, NumberBuffer& buffer);

// What a formula sees of a numeric parameter: the value written with 20 decimals and read back,
// so 1e-21 is 0.
double through_decimals(double value);

// From here on that is the value itself: a double's neighbours are further apart than what 20
// decimals can lose. Below it, a count of units of the last decimal is a whole number in a double.
inline constexpr double kept_by_20_decimals = 0x1p-14;
inline constexpr double units_of_20_decimals = 1e20;

// Numbers without their signs compare as the whole numbers of their bits do, which cannot trap
// where a host has floating-point exceptions on. What is wrong shows in the top bit of a
// difference, takes no branch, and of many numbers is gathered by "or".
using Bits = std::uint64_t;

constexpr Bits size_of(double number) { return std::bit_cast<Bits>(number) & ~(Bits{1} << 63); }

constexpr Bits beyond(double number, double bound) { return size_of(bound) - size_of(number); }

constexpr bool is_set(Bits top_bit) { return top_bit >> 63 != 0; }

// Of a number that parameters do not keep as it is, which lies between 0 and what 20 decimals keep,
// or beyond the range.
constexpr Bits unkept(double number) {
    const Bits size = size_of(number);
    return beyond(number, range_bound) | ((size - size_of(kept_by_20_decimals)) & ~(size - 1));
}

// Whether parameters keep a number as it is, and it is in the range that is computed in.
constexpr bool is_plain(double number) { return !is_set(unkept(number)); }

// The upper half of a number, of 26 bits.
inline double upper_half(double x) {
    const double shifted = x * 0x8000001p0;
    return shifted - (shifted - x);
}

// What a product loses by rounding: the exact one less the rounded one, where neither is next to
// the ends of the range.
inline double product_error(double a, double b, double product) {
    const double upper_a = upper_half(a);
    const double upper_b = upper_half(b);
    const double lower_a = a - upper_a;
    const double lower_b = b - upper_b;
    return ((upper_a * upper_b - product) + (upper_a * lower_b + lower_a * upper_b)) +
           lower_a * lower_b;
}

// Truncation toward zero; beyond 32 bits it saturates, a NaN gives 0.
int to_int(double value);

}  // namespace morandel
