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
    blank = 1,  // skipped between tokens; nothing but the space
    digit = 2,
    single = 4,  // a token by itself
    name_start = 8,
    delimiter = 16,  // ends a name, unless it is the second byte of a character
    lead = 32,       // first byte of a double-byte character
    quote = 64,
};

inline constexpr auto character_table = [] {
    std::array<std::uint8_t, 256> table{};
    auto mark = [&table](std::string_view bytes, int flags) {
        for (const char c : bytes) {
            auto& entry = table[static_cast<unsigned char>(c)];
            entry = static_cast<std::uint8_t>(entry | flags);
        }
    };
    mark(" ", blank);
    mark("0123456789", digit);
    mark("\"", quote);
    mark("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ>\\<}{_~[=", name_start);
    for (std::size_t byte = 0xA0; byte < 256; ++byte) table[byte] = name_start | lead;
    mark("(),", single | delimiter);
    mark(std::string_view("\r\0", 2), delimiter);
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

constexpr bool isdelim(char c) { return is_any(c, delimiter | blank); }

inline const char* end_of_name(const char* next) {
    while (true) {
        while (!is_any(*next, delimiter | blank | lead)) ++next;
        if (isdelim(*next)) return next;
        next += next[1] != '\0' ? 2 : 1;
    }
}

}  // namespace morandel
