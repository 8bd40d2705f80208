// What each byte of a formula can be: one table, no locale. And how many bytes there can be.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "language/operators.h"

namespace morandel {

inline constexpr std::size_t longest_formula = 512;
inline constexpr std::size_t longest_free_name = 250;  // the message of error 38 says 50

enum CharacterClass : std::uint8_t {
    single = 1,  // a token by itself
    digit = 2,
    name_start = 4,
    delimiter = 8,  // ends a name, unless it is the second byte of a character
    lead = 16,      // first byte of a double-byte character
    quote = 32,
};

inline constexpr auto character_table = [] {
    std::array<std::uint8_t, 256> table{};
    auto mark = [&table](std::string_view bytes, int flags) {
        for (const char c : bytes) {
            auto& entry = table[static_cast<unsigned char>(c)];
            entry = static_cast<std::uint8_t>(entry | flags);
        }
    };
    mark("0123456789", digit);
    mark("\"", quote);
    mark("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ>\\<}{_~[=", name_start);
    for (std::size_t byte = 0xA0; byte < 256; ++byte) table[byte] = name_start | lead;
    mark("(),", single | delimiter);
    mark(std::string_view(" \r\0", 3), delimiter);
    // Deliberate: % and the operators that begin like names do not end a name; a>b and x%2 are
    // names.
    mark("%", single);
    for (const Operator& row : operator_table) {
        const auto first = static_cast<unsigned char>(row.text[0]);
        if ((table[first] & name_start) == 0) mark(row.text, single | delimiter);
    }
    return table;
}();

constexpr bool is_any(char c, int flags) {
    return (character_table[static_cast<unsigned char>(c)] & flags) != 0;
}

inline const char* end_of_name(const char* next) {
    while (true) {
        while (!is_any(*next, delimiter | lead)) ++next;
        if (!is_any(*next, lead)) return next;
        next += next[1] != '\0' ? 2 : 1;
    }
}

}  // namespace morandel
