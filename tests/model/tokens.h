// Cuts a formula into tokens.

#pragma once

#include <string>
#include <vector>

namespace model {

enum class TokenClass { end, delimiter, number, literal, constant, name };

struct Token {
    TokenClass token_class = TokenClass::end;
    std::string text;
    double number = 0.0;  // of a number or a named constant
    char code = 0;        // of a delimiter
    char prefix = 0;      // the sign or function that it is where an operand is due
    bool is_literal = false;
    bool quote_closed = false;
    int end = 0;  // offset just past it
};

// The end token comes last; reading ends at the end of the text or at a byte that starts no token.
std::vector<Token> tokenize(const std::string& formula);

}  // namespace model
