// The functions that work on a number's decimal text: int, deci and preci.

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

#include "engine/arithmetic.h"
#include "engine/numbers.h"

namespace morandel {
namespace {

// A number's decimals as digits, at most 20 of them.
struct Decimals {
    std::array<char, 22> text{'0', '.'};
    std::size_t count = 0;

    explicit Decimals(std::string_view digits) : count(digits.size()) {
        std::ranges::copy(digits, text.begin() + 2);
    }
    char& digit(std::size_t place) { return text[place + 2]; }
    void keep(std::size_t places) { count = std::min(count, places); }
    double value() const { return digits_to_number({text.data(), count + 2}); }
};

// A fraction that is itself one of these keeps its nines. Deliberate: twelve nines are missing.
bool keeps_its_nines(double fraction) {
    static constexpr double kept[] = {0.9999,       0.99999,       0.999999,
                                      0.9999999,    0.99999999,    0.999999999,
                                      0.9999999999, 0.99999999999, 0.9999999999999};
    return std::ranges::find(kept, fraction) != std::end(kept);
}

// Takes the first four nines in a row for a carry into the digit before them.
void clean_up_nines(Decimals& decimals) {
    const std::string_view digits{&decimals.digit(0), decimals.count};
    const std::size_t run = digits.find("9999");
    // Deliberate: a run right after the point stays.
    if (run == std::string_view::npos || run == 0) return;
    ++decimals.digit(run - 1);
    decimals.keep(run);
}

// Rounds half up to so many places; true where the carry leaves the first one.
bool round_up(Decimals& decimals, std::size_t places) {
    if (decimals.count <= places || decimals.digit(places) <= '4') return false;
    decimals.keep(places);
    while (decimals.count > 0) {
        char& last = decimals.digit(decimals.count - 1);
        if (last != '9') {
            ++last;
            return false;
        }
        --decimals.count;
    }
    return true;
}

}  // namespace

double integer_part(double value) {
    const double whole = std::trunc(value);
    // Below this the sixth decimal cannot carry. A NaN and the infinities give themselves back.
    if (std::isinf(value) || !(std::abs(value - whole) > 0.999999)) return whole;
    NumberBuffer buffer;
    const std::string_view text = format_fixed(std::abs(value), 6, buffer);
    return std::copysign(digits_to_number(text.substr(0, text.find('.'))), value);
}

double decimal_part(double value) {
    if (!std::isfinite(value)) return 0.0;
    NumberBuffer buffer;
    const std::string_view text = format_fixed(value, 15, buffer);
    return Decimals(text.substr(text.find('.') + 1)).value();
}

Error apply_rounding(Value& value, double decimals) {
    constexpr double most_decimals = 15;
    const double x = value.number;
    value.type = type_number;

    double whole_decimals = 0.0;
    const bool fraction = std::modf(decimals, &whole_decimals) != 0.0;
    if (decimals < 0.0 || (whole_decimals != 0.0 && fraction)) return Error::decimals_not_natural;
    if (decimals > most_decimals) return Error::too_many_decimals;
    if (std::isnan(x)) return Error::decimals_beyond_number;

    double whole = 0.0;
    const double rest = std::modf(x, &whole);
    NumberBuffer buffer;
    const std::string_view text = format_fixed(x, 20, buffer);
    Decimals digits(text.substr(text.find('.') + 1));
    if (!keeps_its_nines(rest)) clean_up_nines(digits);

    const auto places = static_cast<std::size_t>(whole_decimals);
    if (round_up(digits, places)) whole += whole > 0.0 || !(x < 0.0) ? 1.0 : -1.0;
    digits.keep(places);
    value.number = x < 0.0 ? whole - digits.value() : whole + digits.value();
    return Error::none;
}

}  // namespace morandel
