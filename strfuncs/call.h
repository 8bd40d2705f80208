// What a string function works on, and the one signature that all of them have.

#pragma once

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

#include "engine/argument_stack.h"
#include "engine/errors.h"
#include "engine/numbers.h"
#include "engine/text_arena.h"
#include "engine/value.h"

namespace morandel {

struct Call {
    Value& value;                       // first argument in, result out
    const ExtraArguments& extra;        // numbers of the further arguments of this call
    ArgumentStack<std::string>& texts;  // m_TempStr: what this call and others left pending
    ArgumentStack<double>& numbers;     // g_NumArray, likewise
    const StringArgument& string_argument;
    TextArena& arena;

    // Number of the place-th further argument, 0 being the second argument. Deliberate: what is
    // 1000000 as a whole number counts as not given.
    [[nodiscard]] bool given(std::size_t place) const {
        return to_int(extra.values[place]) != static_cast<int>(ExtraArguments::not_given);
    }
    [[nodiscard]] double number_or(std::size_t place, double fallback) const {
        return given(place) ? extra.values[place] : fallback;
    }

    // The text of the last further argument that is one.
    [[nodiscard]] std::string_view last_text() const { return texts.from_top(0); }

    // Takes the further arguments of a call off, by fixed counts: where the call gave fewer, it
    // takes what is pending for others.
    void consume(std::size_t text_count, std::size_t number_count) {
        texts.pop(text_count);
        numbers.pop(number_count);
    }

    Error give_text(std::string_view text) {
        value.text = text;
        value.type = type_text;
        return Error::none;
    }
    // For a text that lies in m_TempStr, whose slots are used again.
    Error give_copy(std::string_view text) {
        char* room = arena.allocate(text.size());
        if (!text.empty()) std::memcpy(room, text.data(), text.size());
        return give_text({room, text.size()});
    }
    Error give_number(double number, ResultType type) {
        value.number = number;
        value.type = type;
        return Error::none;
    }
};

// A failed routine leaves its arguments and the value as they are, unless it says otherwise.
using Routine = Error (*)(Call&);

constexpr std::size_t longest_text = std::size_t{64} * 1024 * 1024;

}  // namespace morandel
