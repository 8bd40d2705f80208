// Numbers and texts into each other, and the choice between two numbers.

#include "strfuncs/routines.h"

namespace morandel {

// r2s(x[, decimals])
Error r2s(Call& call) {
    if (call.numbers.empty()) call.numbers.push(-1.0);
    NumberBuffer room;
    std::string_view text;
    const int decimals = to_int(call.numbers.from_top(0));
    const Error error = write_number(call.value.number, decimals, room, text);
    if (error != Error::none) return error;
    call.consume(0, 1);
    return call.give_copy(text);
}

// s2r(text)
Error s2r(Call& call) {
    return call.give_number(text_to_number(call.value.text), type_number);
}

// if(condition, then, else)
Error choose(Call& call) {
    call.value.type = type_number;
    if (call.numbers.size() < 2) return Error::none;
    call.value.number = call.numbers.from_top(call.value.number == 0.0 ? 0 : 1);
    call.consume(0, 2);
    return Error::none;
}

}  // namespace morandel
