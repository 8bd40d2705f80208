// A token of a formula: one small value.

#pragma once

#include <cstdint>
#include <string_view>

#include "language/words.h"

namespace morandel {

// What a token is as an operand.
enum class OperandKind : std::uint8_t { none, parameter, text, number };

// What the last one of numbers and parameters was.
enum class LastRead : std::uint8_t { nothing, number, text };

struct Token : TokenKind {
    std::string_view text;    // of a name or literal, or of the word that it is
    double number = 0.0;      // of a number or a named constant
    std::uint16_t begin = 0;  // offset of its first byte; of the end token, where reading stopped
    std::uint16_t end = 0;    // offset just past it
    std::uint16_t slot = 0;   // of a parameter
    bool m_IsStringLiteral = false;
    bool m_QuoteClosed = false;

    [[nodiscard]] bool is(TokenClass wanted) const { return token_class == wanted; }
    // Whether it has a value, by the order of the classes.
    [[nodiscard]] bool is_constant() const { return token_class >= TokenClass::number; }

    // A literal is an operand whatever it spells; a named constant is taken as what was read
    // before.
    [[nodiscard]] OperandKind operand(LastRead last_read) const {
        if (m_IsStringLiteral) return OperandKind::text;
        if (!is_constant()) return OperandKind::none;
        if (is(TokenClass::parameter)) return OperandKind::parameter;
        return last_read == LastRead::text ? OperandKind::text : OperandKind::number;
    }
};

// What there is to read where no formula is.
inline constexpr Token end_of_nothing;

}  // namespace morandel
