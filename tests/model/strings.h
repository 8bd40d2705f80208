// The string functions.

#pragma once

#include <string>
#include <vector>

#include "tests/model/errors.h"
#include "tests/model/value.h"

namespace model {

// What a string function works on. A failed one leaves its arguments and the value as they are,
// unless it says otherwise.
struct Call {
    Value& value;                     // first argument in, result out
    const ExtraArguments& extra;      // numbers of the further arguments of this call
    std::vector<std::string>& texts;  // what this call and others left pending
    std::vector<double>& numbers;     // likewise
    const StringArgument& string_argument;

    [[nodiscard]] bool given(std::size_t place) const {
        return extra.values[place] != ExtraArguments::not_given;
    }
    [[nodiscard]] double number_or(std::size_t place, double fallback) const {
        return given(place) ? extra.values[place] : fallback;
    }

    // Takes the further arguments of a call off by fixed counts, as far as there are any.
    void consume(std::size_t text_count, std::size_t number_count);
    Error give_text(const std::string& text);
    Error give_number(double number, ResultType type);
};

// Codes of other functions do nothing.
Error string_function(char code, Call& call);

// How often a piece occurs, from the left and not overlapping; an empty piece never does.
std::size_t count_occurrences(const std::string& piece, const std::string& text);

// Of code page 936: 2 where a lead byte with a byte after it stands at index, else 1.
std::size_t character_size(const std::string& text, std::size_t index);

inline constexpr std::size_t longest_text = std::size_t{64} * 1024 * 1024;

// parts.cpp
Error strsub(Call& call);
Error strtrim(Call& call);
Error strtrims(Call& call);
Error strsubn(Call& call);
Error end_of(Call& call, bool last);  // left and right

// conversions.cpp
Error r2s(Call& call);
Error s2r(Call& call);
Error choose(Call& call);

}  // namespace model
