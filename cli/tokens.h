// A formula's tokens with their places, for showing where something is wrong. All positions and
// texts are bytes of code page 936.

#pragma once

#include <morandel.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace morandel::cli {

// What results, operands and the names of a formula can be.
enum class Kind { open, number, text };

enum class TokenKind {
    end,
    ignored,  // a byte that starts no token, and all that follows it
    number,
    text,      // in quotes
    unclosed,  // a text without its closing quote
    name,
    constant,  // pi, exp
    function,
    symbol,  // + - * / % ^ ( ) ! ,
    word,    // like, equal, and, or, >=, <=, <>, <, >, =
};

struct FormulaToken {
    TokenKind kind = TokenKind::end;
    std::size_t position = 0;
    std::string_view text;  // as written
    const Function* function = nullptr;
    bool is_quoted_word = false;  // "sin" in quotes is the function all the same

    [[nodiscard]] std::size_t end() const { return position + text.size(); }
    [[nodiscard]] bool is(std::string_view symbol) const {
        return (kind == TokenKind::symbol || kind == TokenKind::word) && lower() == symbol;
    }
    [[nodiscard]] std::string lower() const;
};

// At least one; the last one is end or ignored. The texts lie in the formula.
std::vector<FormulaToken> tokens_of(std::string_view formula);

// Of code page 936, in bytes, by its first one.
std::size_t character_size(char first);
// Functions, constants and word operators, whatever their case.
bool is_reserved(std::string_view name);
// Whether a value can be given to a name like this; formulas know more names.
bool is_plain_name(std::string_view name);
// The first character in it that no name can have, as its first byte begins none to the engine,
// which then takes its second byte for another character; else nothing.
std::string_view unnameable_in(std::string_view name);

}  // namespace morandel::cli
