// A token of a formula: one small value, made once when the formula is loaded.

#pragma once

#include <cstdint>
#include <string_view>

namespace morandel {

// Kinds of the current token, as get_token leaves them in m_TokenType.
enum TokenType : std::int8_t { NONE = 0, DELIMITER = 1, VARIABLE = 2, CONSTANT = 3 };

// What a token is before names are looked up among the parameters.
enum class TokenClass : std::uint8_t { end, delimiter, number, literal, constant, name };

struct Token {
    const char* text_begin = "";  // in the formula, or of the word that replaces it
    double number = 0.0;          // of a number or a named constant
    std::uint16_t text_length = 0;
    std::uint16_t end = 0;  // offset just past the token; of the end token, where reading stopped
    TokenClass token_class = TokenClass::end;
    char code = 0;    // of a delimiter, 0 for all others
    char prefix = 0;  // the sign or function that this delimiter is where an operand is due
    bool is_literal = false;
    bool quote_closed = false;

    // Where the name was found among the parameters: slot or -1, as of that generation of them.
    mutable std::int16_t slot = -1;
    mutable std::uint32_t generation = 0;

    [[nodiscard]] std::string_view text() const { return {text_begin, text_length}; }
};

// What there is to read where no formula is.
inline constexpr Token end_of_nothing;

}  // namespace morandel
