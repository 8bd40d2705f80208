// The functions that read further arguments, and what they work on.

#pragma once

#include <cstddef>
#include <string_view>

#include "base/numbers.h"
#include "base/text_arena.h"
#include "base/value.h"
#include "strfuncs/argument_stack.h"

namespace morandel {

struct Call {
    Value& value;                           // first argument in, result out
    const ExtraArguments& extra;            // numbers of the further arguments of this call
    ArgumentStack<PendingText>& m_TempStr;  // texts that this call and others left pending
    ArgumentStack<double>& g_NumArray;      // and numbers
    const StringArgument& first_argument;   // of the last strcat that had a second one
    TextArena& arena;

    // Number of the place-th further argument, 0 being the second argument. Deliberate: a number
    // of exactly 1000000 counts as not given.
    [[nodiscard]] bool given(std::size_t place) const {
        return extra.values[place] != ExtraArguments::not_given;
    }
    [[nodiscard]] double number_or(std::size_t place, double fallback) const {
        return given(place) ? extra.values[place] : fallback;
    }

    // The text of the last further argument that is one.
    [[nodiscard]] std::string_view last_text() const { return m_TempStr.from_top(0); }

    // Whether the numbers of a call that is computed like an operator are in the range.
    [[nodiscard]] bool is_in_range() const {
        return in_range(value.number) && in_range(extra.values[0]);
    }

    // Take the further arguments of a call off, by fixed counts: where the call gave fewer, what
    // is pending for others goes.
    void PopTempStr(std::size_t count) { m_TempStr.pop(count); }
    void PopNumArray(std::size_t count) { g_NumArray.pop(count); }

    Error give_text(std::string_view text) {
        value.text = text;
        value.type = type_text;
        return Error::none;
    }
    // For a text that lies in m_TempStr, whose room is used again.
    Error give_copy(std::string_view text) {
        char* room = arena.allocate(text.size());
        return give_text({room, copy_text(text, room)});
    }
    Error give_number(double number, ResultType type) {
        value.number = number;
        value.type = type;
        return Error::none;
    }
};

// What all of them are. One that fails leaves its arguments and the value as they are, unless it
// says otherwise.
using Routine = Error (*)(Call&);

constexpr std::size_t longest_text = std::size_t{64} * 1024 * 1024;

// parts.cpp: parts of a text
Error strsub(Call& call);
Error strtrim(Call& call);
Error strtrims(Call& call);
Error strsubn(Call& call);
Error left(Call& call);
Error right(Call& call);

// joining.cpp: texts made of others
Error strcat(Call& call);
Error strreplace(Call& call);
Error strdelete(Call& call);
Error strinsert(Call& call);
Error strcase(Call& call);

// searching.cpp: positions and counts
Error strmismatch(Call& call);
Error strfind(Call& call);
Error strfindn(Call& call);
Error strlen(Call& call);

// conversions.cpp: numbers and texts into each other, and numbers of numbers
Error r2s(Call& call);
Error s2r(Call& call);
Error choose(Call& call);
Error preci(Call& call);
Error mod(Call& call);

}  // namespace morandel
