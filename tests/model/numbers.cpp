#include "tests/model/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace model {
namespace {

constexpr std::string_view white_space = " \t\n\v\f\r";

bool is_digit(char c, std::chars_format format) {
    const bool letter = (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
    return (c >= '0' && c <= '9') || (letter && format == std::chars_format::hex);
}

// The value of a numeral that from_chars found out of range: infinity or zero, told by the
// place of its first digit that counts together with its exponent.
double beyond_range(std::string_view numeral, std::chars_format format) {
    const int places_per_digit = format == std::chars_format::hex ? 4 : 1;
    long long magnitude = 0;  // of the first non-zero digit, in powers of the exponent's base
    bool found = false;
    bool after_point = false;
    std::size_t i = 0;
    for (; i < numeral.size() && (numeral[i] == '.' || is_digit(numeral[i], format)); ++i) {
        if (numeral[i] == '.') {
            after_point = true;
            continue;
        }
        if (!found && after_point) magnitude -= places_per_digit;
        if (found && !after_point) magnitude += places_per_digit;
        found = found || numeral[i] != '0';
    }
    if (i < numeral.size()) {
        std::string_view exponent = numeral.substr(i + 1);
        if (exponent.starts_with('+')) exponent.remove_prefix(1);
        long long power = 0;
        const auto read =
            std::from_chars(exponent.data(), exponent.data() + exponent.size(), power);
        constexpr long long most = 1'000'000'000;  // more than any text has digits
        if (read.ec == std::errc::result_out_of_range) power = exponent[0] == '-' ? -most : most;
        magnitude += std::clamp(power, -most, most);
    }
    return magnitude > 0 ? std::numeric_limits<double>::infinity() : 0.0;
}

// Reads an unsigned numeral; without one, false and 0.0.
bool read_unsigned(std::string_view text, std::chars_format format, double& value) {
    value = 0.0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), value, format);
    if (read.ec == std::errc::result_out_of_range) {
        value = beyond_range({text.data(), read.ptr}, format);
    }
    return read.ptr != text.data();
}

// A hexadecimal numeral up to an exponent of two signs, of which some from_chars take the second
// for the exponent's own.
std::string_view without_two_signs(std::string_view numeral) {
    const std::size_t letter = numeral.find_first_of("pP");
    if (letter == std::string_view::npos) return numeral;
    const std::string_view exponent = numeral.substr(letter + 1);
    const bool two_signs = exponent.starts_with("+-") || exponent.starts_with("--");
    return two_signs ? numeral.substr(0, letter) : numeral;
}

}  // namespace

double text_to_number(std::string_view text) {
    const std::size_t start = text.find_first_not_of(white_space);
    if (start == std::string_view::npos) return 0.0;
    text.remove_prefix(start);

    const bool negative = text.front() == '-';
    if (negative || text.front() == '+') text.remove_prefix(1);
    // from_chars would take a second sign.
    if (text.empty() || text.front() == '-') return 0.0;

    double value = 0.0;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X') &&
        (is_digit(text[2], std::chars_format::hex) || text[2] == '.')) {
        read_unsigned(without_two_signs(text.substr(2)), std::chars_format::hex, value);
    } else if (!read_unsigned(text, std::chars_format::general, value)) {
        return 0.0;
    }
    return negative ? -value : value;
}

std::string fixed_text(double value, int decimals) {
    char room[400];
    const auto written =
        std::to_chars(room, std::end(room), value, std::chars_format::fixed, decimals);
    return {room, written.ptr};
}

std::string mantissa_text(double value) {
    char room[400];
    const auto written =
        std::to_chars(room, std::end(room), value, std::chars_format::scientific, 14);
    const std::string text{room, written.ptr};
    return text.substr(0, text.find('e'));
}

double through_decimals(double value) {
    return std::isfinite(value) ? text_to_number(fixed_text(value, 20)) : value;
}

int to_int(double value) {
    if (std::isnan(value)) return 0;
    constexpr double lowest = std::numeric_limits<int>::min();
    constexpr double highest = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(value, lowest, highest));
}

}  // namespace model
