// <charconv> of doubles, also for C++ libraries that have it for whole numbers only. Calls name the
// namespace, since arguments lead to std as well.

#pragma once

#include <charconv>

namespace morandel {

#ifdef __cpp_lib_to_chars
using std::from_chars;
using std::to_chars;
#else
// The same, but a numeral that is too small to be anything but zero gives zero.
std::from_chars_result from_chars(const char* first, const char* last, double& value,
                                  std::chars_format format);
std::to_chars_result to_chars(char* first, char* last, double value, std::chars_format format,
                              int decimals);
#endif

}  // namespace morandel
