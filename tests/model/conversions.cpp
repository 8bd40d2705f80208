// Numbers and texts into each other, and the choice between two numbers.

#include <cmath>

#include "tests/model/numbers.h"
#include "tests/model/strings.h"

namespace model {
namespace {

// The decimals of a non-negative number whose integer part has so many digits: of fifteen
// significant digits, cut off and without zeros at their end.
std::string fraction_of(double x, std::size_t whole_digits, std::size_t places) {
    constexpr std::size_t significant_digits = 15;
    if (whole_digits >= significant_digits) return {};
    // Between 0 and 1, adding 1 keeps the zeros after the point.
    std::string digits = mantissa_text((x > 0.0 && x < 1.0 ? x + 1.0 : x) * 1e14);
    digits.erase(1, 1);
    digits = digits.substr(whole_digits, places);
    return digits.substr(0, digits.find_last_not_of('0') + 1);
}

Error number_to_text(double x, int decimals, std::string& text) {
    if (decimals < -1) return not_positive;
    if (decimals > 15) return too_many_decimals;
    if (!std::isfinite(x)) {
        text = std::isnan(x) ? "nan" : x < 0.0 ? "-inf" : "inf";
        return none;
    }
    text = fixed_text(std::trunc(std::abs(x)), 0);
    const std::string fraction = fraction_of(
        std::abs(x), text.size(), static_cast<std::size_t>(decimals == -1 ? 15 : decimals));
    if (!fraction.empty()) text += '.' + fraction;
    if (x < 0.0 && text != "0") text.insert(0, "-");
    return none;
}

}  // namespace

// r2s(x[, decimals])
Error r2s(Call& call) {
    if (call.numbers.empty()) call.numbers.push_back(-1.0);
    std::string text;
    const Error error = number_to_text(call.value.number, to_int(call.numbers.back()), text);
    if (error != none) return error;
    call.consume(0, 1);
    return call.give_text(text);
}

// s2r(text)
Error s2r(Call& call) { return call.give_number(text_to_number(call.value.text), type_number); }

// if(condition, then, else)
Error choose(Call& call) {
    call.value.type = type_number;
    const std::size_t count = call.numbers.size();
    if (count < 2) return none;
    call.value.number = call.numbers[call.value.number == 0.0 ? count - 1 : count - 2];
    call.consume(0, 2);
    return none;
}

}  // namespace model
