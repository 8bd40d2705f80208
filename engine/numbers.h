// Numbers to text and back. Nothing here asks the host's locale, and every platform gives the
// same bits.

#pragma once

#include <array>
#include <string_view>

namespace morandel {

// The number at the start of a text: white space, a sign, then the longest decimal, hexadecimal,
// inf or nan that stands there; 0.0 where there is none. What is too large reads as infinity,
// what is too small as zero.
double text_to_number(std::string_view text);

// The same for text known to be digits with at most one point, such as a number token.
double digits_to_number(std::string_view digits);

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
// decimals can lose.
inline constexpr double kept_by_20_decimals = 0x1p-13;

// Truncation toward zero; beyond 32 bits it saturates, a NaN gives 0.
int to_int(double value);

}  // namespace morandel
