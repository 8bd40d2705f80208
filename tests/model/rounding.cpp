// The functions that work on a number's decimal text: int, deci and preci.

#include <algorithm>
#include <cmath>

#include "tests/model/arithmetic.h"
#include "tests/model/numbers.h"

namespace model {
namespace {

// After the point.
std::string decimals_of(double value, int count) {
    const std::string text = fixed_text(value, count);
    return text.substr(text.find('.') + 1);
}

// A fraction that is itself one of these keeps its nines; twelve nines are missing.
bool keeps_its_nines(double fraction) {
    static constexpr double kept[] = {0.9999,       0.99999,       0.999999,
                                      0.9999999,    0.99999999,    0.999999999,
                                      0.9999999999, 0.99999999999, 0.9999999999999};
    return std::ranges::find(kept, fraction) != std::end(kept);
}

// Takes the first four nines in a row, but for those right after the point, for a carry.
void clean_up_nines(std::string& digits) {
    const std::size_t run = digits.find("9999");
    if (run == std::string::npos || run == 0) return;
    digits.resize(run);
    ++digits.back();
}

// Rounds half up to so many digits; true where the carry leaves the first one.
bool round_up(std::string& digits, std::size_t places) {
    if (digits.size() <= places || digits[places] <= '4') return false;
    digits.resize(places);
    while (!digits.empty() && digits.back() == '9') digits.pop_back();
    if (digits.empty()) return true;
    ++digits.back();
    return false;
}

}  // namespace

double integer_part(double value) {
    if (!std::isfinite(value)) return value;
    const std::string text = fixed_text(std::abs(value), 6);
    return std::copysign(text_to_number(text.substr(0, text.find('.'))), value);
}

double decimal_part(double value) {
    return std::isfinite(value) ? text_to_number("0." + decimals_of(value, 15)) : 0.0;
}

Error apply_rounding(Value& value, double decimals) {
    const double x = value.number;
    value.type = type_number;

    double whole_decimals = 0.0;
    const bool fraction = std::modf(decimals, &whole_decimals) != 0.0;
    if (decimals < 0.0 || (whole_decimals != 0.0 && fraction)) return decimals_not_natural;
    if (decimals > 15.0) return too_many_decimals;
    if (std::isnan(x)) return decimals_beyond_number;

    double whole = 0.0;
    const double rest = std::modf(x, &whole);
    std::string digits = decimals_of(x, 20);
    if (!keeps_its_nines(rest)) clean_up_nines(digits);

    const auto places = static_cast<std::size_t>(whole_decimals);
    if (round_up(digits, places)) whole += whole > 0.0 || !(x < 0.0) ? 1.0 : -1.0;
    const double kept = text_to_number("0." + digits.substr(0, places));
    value.number = x < 0.0 ? whole - kept : whole + kept;
    return none;
}

}  // namespace model
