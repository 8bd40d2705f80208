// Numbers and texts into each other, and calls that give a number by two or more.

#include <morandel/number_to_text.h>

#include <cmath>

#include "arithmetic/functions.h"
#include "base/floating_point.h"
#include "strfuncs/routines.h"

namespace morandel {
namespace {

// number_to_text into room that the caller has; the text lies there or is constant.
Error write_number(double x, int decimals, NumberBuffer& room, std::string_view& text) {
    constexpr int all_decimals = -1;  // which is more than any number has
    constexpr int most_decimals = 15;
    constexpr std::size_t significant_digits = 15;
    const DefaultFloatingPoint environment;
    text = {};
    if (decimals < all_decimals) return Error::not_positive;
    if (decimals > most_decimals) return Error::too_many_decimals;
    if (!std::isfinite(x)) {
        text = std::isnan(x) ? "nan" : x < 0.0 ? "-inf" : "inf";
        return Error::none;
    }

    const double magnitude = std::abs(x);
    NumberBuffer whole_room;
    NumberBuffer mantissa_room;
    const std::string_view whole = format_fixed(std::trunc(magnitude), 0, whole_room);
    std::string_view fraction;
    if (whole.size() < significant_digits) {
        // Between 0 and 1, adding 1 keeps the zeros after the point. The digits of the whole part
        // come first, with the mantissa's point among them.
        const bool below_one = magnitude > 0.0 && magnitude < 1.0;
        fraction = format_mantissa((below_one ? magnitude + 1.0 : magnitude) * 1e14, mantissa_room)
                       .substr(whole.size() + 1, static_cast<std::size_t>(decimals));
        fraction = fraction.substr(0, fraction.find_last_not_of('0') + 1);
    }
    const bool reads_as_zero = whole == "0" && fraction.empty();

    char* end = room.data();
    if (x < 0.0 && !reads_as_zero) *end++ = '-';
    end = copy_text(whole, end);
    if (!fraction.empty()) *end++ = '.';
    end = copy_text(fraction, end);
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
Error s2r(Call& call) { return call.give_number(text_to_number(call.value.text), type_number); }

// if(condition, then, else)
Error choose(Call& call) {
    call.value.type = type_number;
    if (call.g_NumArray.size() < 2) return Error::none;
    call.value.number = call.g_NumArray.from_top(call.value.number == 0.0 ? 0 : 1);
    call.PopNumArray(2);
    return Error::none;
}

// preci(x, decimals)
Error preci(Call& call) {
    if (!call.is_in_range()) return Error::out_of_range;
    call.value.type = type_number;
    const Error error = round_to_decimals(call.value.number, call.extra.values[0]);
    if (error == Error::none) call.PopNumArray(1);
    return error;
}

// mod(x, divisor)
Error mod(Call& call) {
    if (!call.is_in_range()) return Error::out_of_range;
    const Error error = modulo(call.value.number, call.extra.values[0]);
    if (error != Error::none) return error;
    call.PopNumArray(1);
    return call.give_number(call.value.number, type_number);
}

}  // namespace morandel
