// <charconv> of doubles by the C library, whose decimal conversions round right.

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <system_error>

#include "base/charconv.h"

namespace morandel {
namespace {

bool is_digit_of(char c, bool is_hexadecimal) {
    const bool is_letter = (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
    return (c >= '0' && c <= '9') || (is_hexadecimal && is_letter);
}

std::size_t count_digits(std::string_view text, bool is_hexadecimal) {
    std::size_t count = 0;
    while (count < text.size() && is_digit_of(text[count], is_hexadecimal)) ++count;
    return count;
}

// How much of an exponent stands there, its letter included; 0 for none.
std::size_t size_of_exponent(std::string_view text, char letter) {
    if (text.empty() || (text[0] | 0x20) != letter) return 0;
    const std::size_t sign = text.size() > 1 && (text[1] == '+' || text[1] == '-') ? 1 : 0;
    const std::size_t digits = count_digits(text.substr(1 + sign), false);
    return digits == 0 ? 0 : 1 + sign + digits;
}

std::size_t size_of_numeral(std::string_view text, std::chars_format format) {
    const bool is_hexadecimal = format == std::chars_format::hex;
    std::size_t digits = count_digits(text, is_hexadecimal);
    std::size_t size = digits;
    if (size < text.size() && text[size] == '.') {
        const std::size_t decimals = count_digits(text.substr(size + 1), is_hexadecimal);
        digits += decimals;
        size += 1 + decimals;
    }
    if (digits == 0) return 0;
    if (format == std::chars_format::fixed) return size;
    return size + size_of_exponent(text.substr(size), is_hexadecimal ? 'p' : 'e');
}

unsigned digit_value(char c) {
    return static_cast<unsigned>(c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10);
}

int exponent_of(std::string_view text) {
    constexpr int most = 1'000'000'000;
    const bool is_negative = text.starts_with('-');
    int value = 0;
    for (const char c : text.substr(is_negative || text.starts_with('+') ? 1 : 0)) {
        if (value < most / 10) value = value * 10 + (c - '0');
    }
    return is_negative ? -value : value;
}

// Half way goes to the even neighbour; the C library rounds more than once.
double hexadecimal_value(std::string_view numeral) {
    std::uint64_t bits = 0;
    bool has_more = false;  // behind the bits
    std::int64_t exponent = 0;
    bool is_behind_point = false;
    std::size_t i = 0;
    for (; i < numeral.size() && (numeral[i] | 0x20) != 'p'; ++i) {
        if (numeral[i] == '.') {
            is_behind_point = true;
            continue;
        }
        if (is_behind_point) exponent -= 4;
        const unsigned digit = digit_value(numeral[i]);
        if (bits >> 60 == 0) {
            bits = bits << 4 | digit;
        } else {
            exponent += 4;
            has_more = has_more || digit != 0;
        }
    }
    if (i < numeral.size()) exponent += exponent_of(numeral.substr(i + 1));
    if (bits == 0) return 0.0;
    constexpr int kept = 53;
    constexpr std::int64_t least_exponent = -1074;
    const std::int64_t width = std::bit_width(bits);
    // As many bits go as the doubles there have not.
    const std::int64_t dropped = std::max(width - kept, least_exponent - exponent);
    if (dropped > width) return 0.0;
    if (dropped > 0) {
        const std::uint64_t half = std::uint64_t{1} << (dropped - 1);
        const std::uint64_t rest = bits & (half | (half - 1));
        bits = dropped == 64 ? 0 : bits >> dropped;
        if (rest > half || (rest == half && (has_more || (bits & 1) != 0))) ++bits;
        exponent += dropped;
    }
    const std::int64_t bounded = std::min<std::int64_t>(exponent, 2000);
    return std::ldexp(static_cast<double>(bits), static_cast<int>(bounded));
}

// "inf", "infinity" and "nan", whatever their case, and what may follow the last.
std::size_t size_of_word(std::string_view text) {
    if (text.empty() || ((text[0] | 0x20) != 'i' && (text[0] | 0x20) != 'n')) return 0;
    const std::string word(text);
    char* end = nullptr;
    (void)std::strtod(word.c_str(), &end);
    return static_cast<std::size_t>(end - word.c_str());
}

}  // namespace

std::from_chars_result from_chars(const char* first, const char* last, double& value,
                                  std::chars_format format) {
    const std::string_view text(first, static_cast<std::size_t>(last - first));
    std::size_t size = size_of_numeral(text, format);
    const bool is_numeral = size > 0;
    if (!is_numeral) size = size_of_word(text);
    if (size == 0) return {first, std::errc::invalid_argument};
    const bool is_hexadecimal = is_numeral && format == std::chars_format::hex;
    const double read = is_hexadecimal
                            ? hexadecimal_value(text.substr(0, size))
                            : std::strtod(std::string(text.substr(0, size)).c_str(), nullptr);
    if (is_numeral && std::isinf(read)) return {first + size, std::errc::result_out_of_range};
    value = read;
    return {first + size, std::errc()};
}

std::to_chars_result to_chars(char* first, char* last, double value, std::chars_format format,
                              int decimals) {
    constexpr std::size_t most = 1536;  // the smallest double has 1074 decimals
    char room[most];
    const char* const pattern = format == std::chars_format::fixed ? "%.*f" : "%.*e";
    const int size = std::snprintf(room, most, pattern, decimals, value);
    if (size < 0 || size >= static_cast<int>(most) || size > last - first) {
        return {last, std::errc::value_too_large};
    }
    std::memcpy(first, room, static_cast<std::size_t>(size));
    return {first + size, std::errc()};
}

}  // namespace morandel
