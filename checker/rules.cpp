#include "checker/rules.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>

#include "checker/checker.h"
#include "engine/functions.h"

namespace morandel {
namespace {

constexpr int number = CExpressionCheck::kind_number;
constexpr int text = CExpressionCheck::kind_text;
constexpr int open = CExpressionCheck::kind_open;
constexpr int any = -1;  // how many commas there are at most
constexpr std::nullopt_t uncounted = std::nullopt;

// clang-format off
// In the order of the function table. Deliberate: names and faults that differ from the function's
// own ("strims", "Trim" with fault 1, "R2S" with fault 2), the steps that stay open, and mod,
// strlen and strdelete as they are.
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

// All give a number. Deliberate: "!" records fault 0, and "or" fault 2 on its right.
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

template <class Rule, std::size_t Count>
constexpr std::array<const Rule*, 128> by_code(const Rule (&rules)[Count]) {
    std::array<const Rule*, 128> rows{};
    for (const Rule& rule : rules) rows[static_cast<unsigned char>(rule.code)] = &rule;
    return rows;
}

constexpr auto functions_by_code = by_code(function_rules);
constexpr auto operators_by_code = by_code(operator_rules);

}  // namespace

const CheckRule* rule_of_code(char code) {
    return functions_by_code[static_cast<unsigned char>(code) & 0x7FU];
}

const OperatorRule* rule_of_operator(char code) {
    return operators_by_code[static_cast<unsigned char>(code) & 0x7FU];
}

int expected_kind(std::string_view name, int index) {
    for (const CheckRule& rule : function_rules) {
        if (name != rule.name) continue;
        if (index < 2) return rule.first_kind;
        return further_kind(rule.further_kinds, static_cast<std::size_t>(index) - 2);
    }
    const auto* rule = std::ranges::find(operator_rules, name, &OperatorRule::name);
    return rule == std::end(operator_rules) ? -1 : rule->kind;
}

int further_kind(std::string_view kinds, std::size_t comma) {
    if (kinds.ends_with('*')) return kinds[0] - '0';
    return comma < kinds.size() ? kinds[comma] - '0' : -1;
}

bool fits(int kind, int expected) {
    if (kind == CExpressionCheck::kind_variable) return true;
    return (kind == CExpressionCheck::kind_text) == (expected == CExpressionCheck::kind_text);
}

}  // namespace morandel
