// The words of the formula language: functions, operators that are words or relations, constants.

#pragma once

#include <optional>
#include <string>

namespace model {

// Who carries a function out.
enum class Carrier { numeric, arithmetic, text };

struct Function {
    const char* name;
    char code;
    Carrier carrier;
    int first_type;             // type expected of a variable as first argument
    const char* further_types;  // as 2nd, 3rd ... argument, the last digit for all that follow
};

// Other delimiters are their own codes.
enum WordCode : char { code_like = 1, code_equal, code_and, code_or, code_ge, code_le, code_ne };

struct Word {
    const char* name;
    std::string replacement;  // what the token's text becomes
    char code;                // 0 for a constant
    char prefix;              // the function that it is where an operand is due, 0 for none
    double number;            // of a constant
};

const Function* function_of_code(char code);

// Whatever the case of the name.
std::optional<Word> find_word(const std::string& name);

constexpr bool is_relation(char code) {
    return (code >= code_like && code <= code_ne) || code == '<' || code == '>' || code == '=';
}

// The relations as the levels try them, each once.
inline constexpr char relations_in_order[] = {code_and, code_le, code_ge, code_ne,   '>',
                                              '<',      '=',     code_or, code_like, code_equal};

constexpr char to_lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr char to_upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace model
