// The functions that take more than a few lines: mod, and those that work on a number's decimal
// text, int, deci and preci.

#include <algorithm>
#include <array>

#include "arithmetic/functions.h"
#include "base/numbers.h"

namespace morandel {
namespace {

// A number's decimals as digits, at most 20 of them.
struct Decimals {
    std::array<char, 22> text{'0', '.'};
    std::size_t count = 0;

    Decimals(double x, int places) {
        NumberBuffer buffer;
        const std::string_view written = format_fixed(x, places, buffer);
        const std::string_view digits = written.substr(written.find('.') + 1);
        std::ranges::copy(digits, text.begin() + 2);
        count = digits.size();
    }
    char& digit(std::size_t place) { return text[place + 2]; }
    void keep(std::size_t places) { count = std::min(count, places); }
    double value() const { return text_to_number({text.data(), count + 2}); }
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
    while (places > 0 && decimals.digit(places - 1) == '9') --places;
    decimals.keep(places);
    if (places == 0) return true;
    ++decimals.digit(places - 1);
    return false;
}

}  // namespace

Error modulo(double& x, double divisor) {
    if (divisor == 0.0) return Error::modulo_by_zero;
    constexpr double countable = 0x1p53;
    const double dividend = std::abs(x);
    const double step = std::abs(divisor);
    const double quotient = dividend / step;
    if (quotient <= countable) {
        // Rounded multiples do not fall, so only the counts next to the quotient can meet it.
        const double nearest = std::floor(quotient);
        for (double count = nearest - 2.0; count <= nearest + 2.0; count += 1.0) {
            if (count >= 1.0 && step * count == dividend) {
                x = 0.0;
                return Error::none;
            }
        }
    }
    x = std::fmod(x, divisor);
    return Error::none;
}

Error integer_part(double& x) {
    if (x > range_bound) return Error::out_of_range;
    const double value = x;
    x = std::trunc(value);
    // Below this the sixth decimal cannot carry. A NaN and the infinities give themselves back.
    if (std::isinf(value) || !(std::abs(value - x) > 0.999999)) return Error::none;
    NumberBuffer buffer;
    const std::string_view text = format_fixed(std::abs(value), 6, buffer);
    x = std::copysign(text_to_number(text.substr(0, text.find('.'))), value);
    return Error::none;
}

Error decimal_part(double& x) {
    if (x > range_bound) return Error::out_of_range;
    x = std::isfinite(x) ? Decimals(x, 15).value() : 0.0;
    return Error::none;
}

Error round_to_decimals(double& x, double decimals) {
    constexpr double most_decimals = 15;
    const double whole_decimals = std::trunc(decimals);
    if (decimals < 0.0 || (whole_decimals != 0.0 && whole_decimals != decimals)) {
        return Error::decimals_not_natural;
    }
    if (decimals > most_decimals) return Error::too_many_decimals;
    if (std::isnan(x)) return Error::decimals_beyond_number;

    double whole = 0.0;
    const double rest = std::modf(x, &whole);
    Decimals digits(x, 20);
    if (!keeps_its_nines(rest)) clean_up_nines(digits);

    const auto places = static_cast<std::size_t>(whole_decimals);
    if (round_up(digits, places)) whole += x < 0.0 ? -1.0 : 1.0;
    digits.keep(places);
    x = x < 0.0 ? whole - digits.value() : whole + digits.value();
    return Error::none;
}

}  // namespace morandel
