// The calls that are computed like operators: first of all, their numbers are held to the range.

#include <algorithm>

#include "arithmetic/functions.h"
#include "base/characters.h"
#include "strfuncs/routines.h"

namespace morandel {
namespace {

bool numbers_in_range(const Call& call) {
    return in_range(call.value.number) && in_range(call.extra.values[0]);
}

}  // namespace

// preci(x, decimals)
Error preci(Call& call) {
    if (!numbers_in_range(call)) return Error::out_of_range;
    call.value.type = type_number;
    const Error error = round_to_decimals(call.value.number, call.extra.values[0]);
    if (error == Error::none) call.PopNumArray(1);
    return error;
}

// mod(x, divisor)
Error mod(Call& call) {
    if (!numbers_in_range(call)) return Error::out_of_range;
    const Error error = modulo(call.value.number, call.extra.values[0]);
    if (error != Error::none) return error;
    call.value.type = type_number;
    call.PopNumArray(1);
    return error;
}

// strcase(text[, 0]): letters byte by byte, in double-byte characters too.
Error strcase(Call& call) {
    if (!numbers_in_range(call)) return Error::out_of_range;
    const std::string_view text = call.value.text;
    char* changed = call.arena.allocate(text.size());
    std::ranges::transform(text, changed, call.extra.values[0] == 0.0 ? to_lower : to_upper);
    return call.give_text({changed, text.size()});
}

// strlen(text)
Error strlen(Call& call) {
    call.give_number(static_cast<double>(call.value.text.size()), type_number);
    // Deliberate: a further argument changes nothing, but is held to the range as well.
    return numbers_in_range(call) ? Error::none : Error::out_of_range;
}

}  // namespace morandel
