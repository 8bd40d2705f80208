// What each byte of a formula can be: one table, no locale.

#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace morandel {

enum CharacterClass : std::uint8_t {
    blank = 1,  // skipped between tokens; nothing but the space
    digit = 2,
    single = 4,  // a token by itself
    name_start = 8,
    delimiter = 16,  // ends a name, unless it is the second byte of a character
    lead = 32,       // first byte of a double-byte character
};

constexpr std::array<std::uint8_t, 256> make_character_table() {
    std::array<std::uint8_t, 256> table{};
    auto mark = [&table](std::string_view bytes, int flag) {
        for (const char c : bytes) {
            auto& entry = table[static_cast<unsigned char>(c)];
            entry = static_cast<std::uint8_t>(entry | flag);
        }
    };
    mark(" ", blank);
    mark("0123456789", digit);
    mark("+-*/%^()!,", single);
    mark("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ>\\<}{_~[=", name_start);
    // Deliberate: % and the relations do not end a name; a>b and x%2 are names.
    mark(std::string_view("+-*/^()!,\r\0", 11), delimiter);
    for (std::size_t byte = 0xA0; byte < 256; ++byte) table[byte] = name_start | lead;
    return table;
}

inline constexpr std::array<std::uint8_t, 256> character_table = make_character_table();

constexpr bool is_any(char c, int flags) {
    return (character_table[static_cast<unsigned char>(c)] & flags) != 0;
}

constexpr bool isdelim(char c) {
    return is_any(c, delimiter);
}

constexpr char to_lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr char to_upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace morandel
