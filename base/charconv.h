// <charconv> of doubles, also for C++ libraries that have it for whole numbers only.

#pragma once

#include <charconv>

namespace morandel {

#ifdef __cpp_lib_to_chars
inline std::from_chars_result double_from_chars(const char* first, const char* last, double& value,
                                                std::chars_format format) {
    return std::from_chars(first, last, value, format);
}

inline std::to_chars_result double_to_chars(char* first, char* last, double value,
                                            std::chars_format format, int decimals) {
    return std::to_chars(first, last, value, format, decimals);
}
#else
// The same, but a numeral that is too small to be anything but zero gives zero.
std::from_chars_result double_from_chars(const char* first, const char* last, double& value,
                                         std::chars_format format);
std::to_chars_result double_to_chars(char* first, char* last, double value,
                                     std::chars_format format, int decimals);
#endif

}  // namespace morandel
