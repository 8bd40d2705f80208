// Numbers and texts into each other, and the choice between two numbers.

#include <morandel/number_to_text.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

#include "base/floating_point.h"
#include "strfuncs/routines.h"

namespace morandel {
namespace {

constexpr int all_decimals = -1;
constexpr int most_decimals = 15;
constexpr std::size_t significant_digits = 15;

// The decimals of a non-negative number whose integer part was written with so many digits, each
// of them a significant digit.
class FractionDigits {
  public:
    FractionDigits(double x, std::string_view whole) {
        if (whole.size() >= significant_digits) return;
        // Between 0 and 1, adding 1 keeps the zeros after the point.
        const bool below_one = x > 0.0 && x < 1.0;
        NumberBuffer buffer;
        const std::string_view mantissa = format_mantissa((below_one ? x + 1.0 : x) * 1e14, buffer);
        m_digits[0] = mantissa[0];
        std::ranges::copy(mantissa.substr(2), m_digits.begin() + 1);
        m_text = std::string_view(m_digits.data(), significant_digits).substr(whole.size());
    }

    // The first so many, without the zeros at their end.
    [[nodiscard]] std::string_view cut_off(std::size_t places) const {
        const std::string_view kept = m_text.substr(0, places);
        return kept.substr(0, kept.find_last_not_of('0') + 1);
    }

  private:
    std::array<char, significant_digits> m_digits{};
    std::string_view m_text;
};

// number_to_text into room that the caller has; the text lies there or is constant.
Error write_number(double x, int decimals, NumberBuffer& room, std::string_view& text) {
    const DefaultFloatingPoint environment;
    text = {};
    if (decimals < all_decimals) return Error::not_positive;
    if (decimals > most_decimals) return Error::too_many_decimals;
    if (!std::isfinite(x)) {
        text = std::isnan(x) ? "nan" : x < 0.0 ? "-inf" : "inf";
        return Error::none;
    }

    const double magnitude = std::abs(x);
    NumberBuffer buffer;
    const std::string_view whole = format_fixed(std::trunc(magnitude), 0, buffer);
    const FractionDigits digits(magnitude, whole);
    const bool all = decimals == all_decimals;
    const std::string_view fraction =
        digits.cut_off(static_cast<std::size_t>(all ? most_decimals : decimals));
    const bool reads_as_zero = whole == "0" && fraction.empty();

    char* end = room.data();
    if (x < 0.0 && !reads_as_zero) *end++ = '-';
    end = std::ranges::copy(whole, end).out;
    if (!fraction.empty()) {
        *end++ = '.';
        end = std::ranges::copy(fraction, end).out;
    }
    text = {room.data(), end};
    return Error::none;
}

}  // namespace

Error number_to_text(double x, int decimals, std::string& text) {
    NumberBuffer room;
    std::string_view written;
    const Error error = write_number(x, decimals, room, written);
    text = written;
    return error;
}

// r2s(x[, decimals])
Error r2s(Call& call) {
    if (call.g_NumArray.empty()) call.g_NumArray.push(-1.0);
    NumberBuffer room;
    std::string_view text;
    const int decimals = to_int(call.g_NumArray.from_top(0));
    const Error error = write_number(call.value.number, decimals, room, text);
    if (error != Error::none) return error;
    call.PopNumArray(1);
    return call.give_copy(text);
}

// s2r(text)
Error s2r(Call& call) {
    return call.give_number(text_to_number(call.value.text), type_number);
}

// if(condition, then, else)
Error choose(Call& call) {
    call.value.type = type_number;
    if (call.g_NumArray.size() < 2) return Error::none;
    call.value.number = call.g_NumArray.from_top(call.value.number == 0.0 ? 0 : 1);
    call.PopNumArray(2);
    return Error::none;
}

}  // namespace morandel
