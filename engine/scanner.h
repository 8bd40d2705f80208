// Cuts a formula into tokens, one at a time.

#pragma once

#include <cstdint>
#include <string_view>

#include "base/floating_point.h"
#include "base/numbers.h"
#include "engine/token.h"
#include "language/characters.h"
#include "language/words.h"

namespace morandel {

// Reads from a terminated text of at most 512 bytes. Tokens refer to its bytes.
class Scanner {
  public:
    Scanner(const char* formula, DefaultFloatingPointIfNeeded& environment)
        : m_formula(formula), m_next(formula), m_environment(environment) {}

    // As though there were nothing more.
    void stop() { m_next = ""; }

    // Reads the next token and tells what its first byte begins: a single token, a name, a number,
    // a literal, or nothing. At the terminator, or at a byte that starts no token, it is the end
    // token, and stays so.
    int read(Token& token) {
        skip_blanks();
        token.m_IsStringLiteral = false;
        const int starts = character_table[static_cast<unsigned char>(*m_next)];
        if ((starts & single) != 0) {
            set_kind(token, kind_of_byte(*m_next++));
            return single;
        }
        if ((starts & name_start) != 0) return read_name(token);
        if ((starts & digit) != 0) {
            set_kind(token, {TokenClass::number});
            m_next = read_digits(m_next, token.number, m_environment);
            return digit;
        }
        if ((starts & quote) != 0) return read_literal(token);
        set_kind(token, {});
        return 0;
    }

    // The same with its place.
    void read_with_place(Token& token) {
        skip_blanks();
        token.begin = offset();
        read(token);
        token.end = offset();
    }

  private:
    void skip_blanks() {
        while (*m_next == ' ') ++m_next;
    }
    // The offset of what is read next.
    [[nodiscard]] std::uint16_t offset() const {
        return static_cast<std::uint16_t>(m_next - m_formula);
    }

    static const TokenKind& kind_of_byte(char byte) {
        return kinds_of_bytes[static_cast<unsigned char>(byte)];
    }
    static void set_kind(Token& token, const TokenKind& kind) {
        static_cast<TokenKind&>(token) = kind;
    }

    int read_name(Token& token) {
        const char* begin = m_next;
        m_next = end_of_name(begin);
        token.text = std::string_view(begin, m_next);
        if (token.text.size() == 1) {
            set_kind(token, kind_of_byte(*begin));
        } else {
            set_kind(token, {TokenClass::name});
            isFunction(token);
        }
        return name_start;
    }

    // The inside of the quotes. Without a closing quote it reaches to the end of the formula.
    int read_literal(Token& token) {
        const char* begin = ++m_next;
        while (*m_next != '"' && *m_next != '\0') ++m_next;
        token.text = std::string_view(begin, m_next);
        set_kind(token, {TokenClass::literal});
        token.m_IsStringLiteral = true;
        token.m_QuoteClosed = *m_next == '"';
        if (token.m_QuoteClosed) ++m_next;
        isFunction(token);
        return quote;
    }

    // Turns a name that is a function, an operator or a constant into that. Deliberate: a literal
    // that spells one is taken as one too.
    static void isFunction(Token& token) {
        const Word* word = find_word(token.text);
        if (word == nullptr) return;
        set_kind(token, word->kind);
        token.text = word->text;
        token.number = word->number;
    }

    const char* m_formula;
    const char* m_next;
    DefaultFloatingPointIfNeeded& m_environment;  // of numbers
};

}  // namespace morandel
