// A token of a formula: one small value.

#pragma once

#include <cstdint>
#include <string_view>

#include "language/words.h"

namespace morandel {

enum TokenType : std::int8_t { NONE = 0, DELIMITER = 1, VARIABLE = 2, CONSTANT = 3 };

// What a token is as an operand.
enum class OperandKind : std::uint8_t { none, parameter, text, number };

struct Token : TokenKind {
    std::string_view text;    // of a name or literal, or of the word that it is
    double number = 0.0;      // of a number or a named constant
    std::uint16_t begin = 0;  // offset of its first byte; of the end token, where reading stopped
    std::uint16_t end = 0;    // offset just past it
    std::uint16_t slot = 0;   // of a parameter
    bool m_IsStringLiteral = false;
    bool m_QuoteClosed = false;

    // By its class, which is in the order of these.
    [[nodiscard]] TokenType type() const {
        return static_cast<TokenType>(token_class < TokenClass::number ? token_class
                                                                       : TokenClass::number);
    }

    // A literal is an operand whatever it spells; a named constant is taken as what was read
    // before.
    [[nodiscard]] OperandKind operand(bool is_number) const {
        if (m_IsStringLiteral) return OperandKind::text;
        if (type() != CONSTANT) return OperandKind::none;
        if (token_class == TokenClass::parameter) return OperandKind::parameter;
        return is_number ? OperandKind::number : OperandKind::text;
    }
};

// What there is to read where no formula is.
inline constexpr Token end_of_nothing;

}  // namespace morandel
