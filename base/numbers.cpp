#include "base/numbers.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <system_error>

#include "base/characters.h"
#include "base/charconv.h"

namespace morandel {
namespace {

// The value of a numeral that from_chars found out of range: infinity or zero, told by the place of
// its first digit that counts together with its exponent.
double beyond_range(std::string_view numeral, std::chars_format format) {
    const bool is_hex = format == std::chars_format::hex;
    const std::size_t letter =
        std::min(numeral.find_first_of(is_hex ? "pP" : "eE"), numeral.size());
    const std::string_view digits = numeral.substr(0, letter);
    const std::size_t first = std::min(digits.find_first_not_of("0."), digits.size());
    const std::size_t point = std::min(digits.find('.'), digits.size());
    const auto places = static_cast<long long>(point) - static_cast<long long>(first);

    long long power = 0;  // of the exponent's base
    if (letter < numeral.size()) {
        std::string_view exponent = numeral.substr(letter + 1);
        if (exponent.starts_with('+')) exponent.remove_prefix(1);
        const auto read =
            std::from_chars(exponent.data(), exponent.data() + exponent.size(), power);
        constexpr long long most = 1'000'000'000'000;  // more than any text has digits
        if (read.ec == std::errc::result_out_of_range) power = exponent[0] == '-' ? -most : most;
        power = std::clamp(power, -most, most);
    }
    const long long magnitude = places * (is_hex ? 4 : 1) + power;
    return magnitude > 0 ? std::numeric_limits<double>::infinity() : 0.0;
}

// Reads an unsigned numeral; without one, false and 0.0.
bool read_unsigned(std::string_view text, std::chars_format format, double& value) {
    value = 0.0;
    const auto read = morandel::from_chars(text.data(), text.data() + text.size(), value, format);
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
    text = {std::ranges::find_if_not(text, is_white_space), text.end()};
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    // from_chars would take a second sign.
    if (text.starts_with('-')) return 0.0;

    constexpr std::string_view begins_hexadecimal = "0123456789abcdefABCDEF.";
    double value = 0.0;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X') &&
        begins_hexadecimal.find(text[2]) != std::string_view::npos) {
        read_unsigned(without_two_signs(text.substr(2)), std::chars_format::hex, value);
    } else if (!read_unsigned(text, std::chars_format::general, value)) {
        return 0.0;
    }
    return negative ? -value : value;
}

const char* read_digits(const char* next, double& value,
                        DefaultFloatingPointIfNeeded& environment) {
    // Whole numbers and powers of ten up to these are exact, and one division rounds right.
    constexpr std::ptrdiff_t exact_digits = 15;
    static constexpr double powers_of_ten[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                               1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    const char* const begin = next;
    std::uint64_t whole = 0;
    const auto read_whole = [&] {
        for (; *next >= '0' && *next <= '9'; ++next) {
            whole = whole * 10 + static_cast<std::uint64_t>(*next - '0');
        }
    };
    read_whole();
    std::ptrdiff_t decimals = 0;
    if (*next == '.') {
        const char* const first = ++next;
        read_whole();
        decimals = next - first;
    }
    const std::ptrdiff_t size = next - begin;
    const bool is_exact = size <= exact_digits && decimals == 0;
    if (!is_exact && !environment) environment.emplace();
    if (size > exact_digits) {
        read_unsigned({begin, static_cast<std::size_t>(size)}, std::chars_format::fixed, value);
    } else {
        value = static_cast<double>(static_cast<std::int64_t>(whole));
        if (decimals > 0) value /= powers_of_ten[decimals];
    }
    return next;
}

std::string_view format_fixed(double value, int decimals, NumberBuffer& buffer) {
    const auto written = morandel::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                            std::chars_format::fixed, decimals);
    return {buffer.data(), written.ptr};
}

std::string_view format_mantissa(double value, NumberBuffer& buffer) {
    const auto written = morandel::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                            std::chars_format::scientific, 14);
    const std::string_view text{buffer.data(), written.ptr};
    return text.substr(0, text.find('e'));
}

double through_decimals(double value) {
    if (!(std::abs(value) < kept_by_20_decimals) || value == 0.0) return value;
    const double size = std::abs(value);
    const double units = size * units_of_20_decimals;
    // The nearest whole number, of two the even one, and then by what the product has lost.
    double count = std::nearbyint(units);
    const double lost = product_error(size, units_of_20_decimals, units);
    if (units - count == 0.5 && lost > 0.0) count += 1.0;
    if (units - count == -0.5 && lost < 0.0) count -= 1.0;
    return std::copysign(count / units_of_20_decimals, value);
}

int to_int(double value) {
    if (std::isnan(value)) return 0;
    constexpr double lowest = std::numeric_limits<int>::min();
    constexpr double highest = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(value, lowest, highest));
}

}  // namespace morandel
