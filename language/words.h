// What names, the insides of literals and single bytes turn out to be.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/name_key.h"
#include "language/operators.h"

namespace morandel {

enum class TokenClass : std::uint8_t { end, delimiter, name, number, literal, constant, parameter };

struct TokenKind {
    TokenClass token_class = TokenClass::end;
    char code = 0;              // of a delimiter, 0 for all others
    char prefix = 0;            // the sign or function that it is where an operand is due
    Level level = Level::none;  // of an operator
};

struct Word {
    std::string_view name;  // lower case
    NameKey key;            // of the name
    TokenKind kind;
    std::string_view text;  // what the token's text becomes
    double number = 0.0;    // of a constant
};

// For each first byte, a bit for each length of the words that begin with it.
extern const std::array<std::uint16_t, 256> lengths_of_words;

// Of a name whose first byte and length are those of a word.
const Word* look_up_word(std::string_view name);

// The function, word operator or named constant of that name, whatever its case; null of most
// names, which are no words.
inline const Word* find_word(std::string_view name) {
    constexpr std::size_t longest = 15;
    if (name.empty() || name.size() > longest) return nullptr;
    const unsigned lengths = lengths_of_words[static_cast<unsigned char>(name[0])];
    return (lengths >> name.size() & 1) != 0 ? look_up_word(name) : nullptr;
}

// What each byte is as a token of its own.
extern const std::array<TokenKind, 256> kinds_of_bytes;

}  // namespace morandel
