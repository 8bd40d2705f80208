// What the checker requires.

#include "tests/model/checker.h"
#include "tests/model/words.h"

namespace model {
namespace {

constexpr int number = Checker::kind_number;
constexpr int text = Checker::kind_text;
constexpr int open = Checker::kind_open;
constexpr int any = -1;  // how many commas there are at most
constexpr std::nullopt_t uncounted = std::nullopt;

// clang-format off
constexpr CheckRule function_rules[] = {
    // code name         1st     fault  further  commas          closes result
    {'s', "sin",         number, 1,     "",      uncounted,      true,  number},
    {'c', "cos",         number, 1,     "",      uncounted,      true,  number},
    {'t', "tan",         number, 1,     "",      uncounted,      true,  number},
    {'e', "ctan",        number, 1,     "",      uncounted,      true,  number},
    {'q', "sqrt",        number, 1,     "",      uncounted,      true,  number},
    {'x', "arcsin",      number, 1,     "",      uncounted,      true,  number},
    {'y', "arccos",      number, 1,     "",      uncounted,      true,  number},
    {'z', "arctan",      number, 1,     "",      uncounted,      true,  number},
    {'w', "arcctan",     number, 1,     "",      uncounted,      true,  number},
    {'m', "ln",          number, 1,     "",      uncounted,      true,  number},
    {'n', "log",         number, 1,     "",      uncounted,      true,  number},
    {'o', "int",         number, 1,     "",      uncounted,      true,  number},
    {'p', "deci",        number, 1,     "",      uncounted,      true,  number},
    {'u', "preci",       number, 1,     "1",     Commas{1, 1},   true,  number},
    {'r', "mod",         number, 1,     "1",     Commas{1, 1},   true,  number},
    {'C', "strcase",     text,   2,     "1",     Commas{0, 1},   true,  text},
    {'L', "strlen",      text,   2,     "",      uncounted,      true,  number},
    {'U', "strsub",      text,   2,     "111",   Commas{1, 3},   true,  text},
    {'T', "Trim",        text,   1,     "21",    Commas{1, 2},   true,  text},
    {'A', "strcat",      text,   2,     "2*",    Commas{0, any}, true,  text},
    {'S', "strims",      text,   2,     "",      uncounted,      true,  text},
    {'M', "strmismatch", text,   2,     "2111",  Commas{1, 4},   true,  open},
    {'F', "strfind",     text,   2,     "21",    Commas{1, 2},   true,  open},
    {'R', "strreplace",  text,   2,     "2211",  Commas{0, 4},   true,  text},
    {'D', "strdelete",   text,   2,     "",      Commas{1, any}, true,  text},
    {'Y', "strinsert",   text,   2,     "21",    Commas{2, 2},   true,  text},
    {'V', "R2S",         number, 2,     "1",     Commas{0, 1},   true,  text},
    {'Z', "S2R",         text,   2,     "",      uncounted,      true,  number},
    {'N', "strsubn",     text,   2,     "21",    Commas{2, 2},   true,  text},
    {'l', "left",        text,   2,     "1",     Commas{1, 1},   false, number},
    {'i', "right",       text,   2,     "1",     Commas{1, 1},   false, number},
    {'f', "strfindn",    text,   2,     "21",    Commas{1, 2},   true,  number},
    {'j', "not",         number, 1,     "",      uncounted,      true,  number},
    {'h', "if",          number, 1,     "1111",  Commas{2, 4},   false, number},
};

constexpr OperatorRule operator_rules[] = {
    // code      name     kind    faults: left, right
    {'+',        "+",     number, 1, 1},
    {'-',        "-",     number, 1, 1},
    {'*',        "*",     number, 1, 1},
    {'/',        "/",     number, 1, 1},
    {'^',        "^",     number, 1, 1},
    {'!',        "!",     number, 0, 1},
    {code_like,  "like",  text,   2, 2},
    {code_equal, "equal", text,   2, 2},
    {code_and,   "and",   number, 1, 1},
    {code_or,    "or",    number, 1, 2},
    {code_ge,    ">=",    number, 1, 1},
    {code_le,    "<=",    number, 1, 1},
    {code_ne,    "<>",    number, 1, 1},
    {'>',        ">",     number, 1, 1},
    {'<',        "<",     number, 1, 1},
    {'=',        "=",     number, 1, 1},
};
// clang-format on

}  // namespace

const CheckRule& rule_of_code(char code) {
    const CheckRule* rule = function_rules;
    while (rule->code != code) ++rule;
    return *rule;
}

const OperatorRule& rule_of_operator(char code) {
    const OperatorRule* rule = operator_rules;
    while (rule->code != code) ++rule;
    return *rule;
}

int further_kind(std::string_view kinds, std::size_t comma) {
    if (kinds.ends_with('*')) return kinds[0] - '0';
    return comma < kinds.size() ? kinds[comma] - '0' : -1;
}

}  // namespace model
