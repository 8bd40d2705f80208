// Numbers to text and back.

#pragma once

#include <string>
#include <string_view>

namespace model {

// The number at the start of a text; 0.0 where there is none. What is too large reads as infinity,
// what is too small as zero.
double text_to_number(std::string_view text);

// With exactly so many decimals.
std::string fixed_text(double value, int decimals);

// One digit, a point and 14 decimals, without the exponent.
std::string mantissa_text(double value);

// The value written with 20 decimals and read back.
double through_decimals(double value);

// Toward zero; beyond 32 bits it saturates, a NaN gives 0.
int to_int(double value);

}  // namespace model
