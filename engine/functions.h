// The index of the formula language: its functions, word operators and named constants, each a
// row of one table. Tokenizer, type deduction, checker, help and tests read these tables.

#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "engine/export.h"

namespace morandel {

// Who carries a function out.
enum class Carrier : std::uint8_t {
    numeric,     // unary
    arithmetic,  // atith
    text,        // the string functions
};

struct Function {
    std::string_view name;
    char code;  // what the function is called after tokenizing
    Carrier carrier;
    std::string_view
        kinds;       // of the arguments: n number, t text; those behind '[' may be left out,
                     // '*' repeats the last
    int first_type;  // type that a variable as first argument is expected to have
    std::string_view further_types;  // as 2nd, 3rd ... argument, the last digit for all that
                                     // follow; empty: the type of the variable before it
    std::string_view arguments;
    std::string_view summary;
    std::string_view example;
};

// All 34 functions in the order people look for them. The rows live as long as the program.
//     for (const morandel::Function& f : morandel::functions()) std::cout << f.name << '\n';
MORANDEL_EXPORT std::span<const Function> functions();

// The row of a name, whatever its case; null where no function has that name.
//     find_function("StrSub")->code   // 'U'
MORANDEL_EXPORT const Function* find_function(std::string_view name);

// The row of a code character; null for any other character.
const Function* function_of_code(char code);

// Codes of the word operators and relations of two characters. Other delimiters are their own
// codes.
enum WordCode : char { code_like = 1, code_equal, code_and, code_or, code_ge, code_le, code_ne };

// What a name, or the inside of a literal, turns out to be.
struct Word {
    std::string_view name;         // lower case
    std::string_view replacement;  // what the token's text becomes
    char code;                     // of a function or an operator, 0 for a constant
    char prefix;    // the function that this word acts as where an operand is due, 0 for none
    double number;  // of a constant
};

// The function, word operator or named constant of that name, whatever its case, or null.
const Word* find_word(std::string_view name);

// Whether the code is one that level4 compares with: the words and the relations.
constexpr bool is_relation(char code) {
    return (code >= code_like && code <= code_ne) || code == '<' || code == '>' || code == '=';
}

// The relations as level4 tries them. Deliberate: each is tried once, in this order, and takes all
// that follows as its right side, so 1 > 2 and 3 reads as 1 > (2 and 3).
inline constexpr char relations_in_order[] = {code_and, code_le, code_ge, code_ne,   '>',
                                              '<',      '=',     code_or, code_like, code_equal};

}  // namespace morandel
