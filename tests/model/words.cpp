#include "tests/model/words.h"

namespace model {
namespace {

// clang-format off
constexpr Function functions[] = {
    {"sin",         's', Carrier::numeric,    1, ""},
    {"cos",         'c', Carrier::numeric,    1, ""},
    {"tan",         't', Carrier::numeric,    1, ""},
    {"ctan",        'e', Carrier::numeric,    1, ""},
    {"sqrt",        'q', Carrier::numeric,    1, ""},
    {"arcsin",      'x', Carrier::numeric,    1, ""},
    {"arccos",      'y', Carrier::numeric,    1, ""},
    {"arctan",      'z', Carrier::numeric,    1, ""},
    {"arcctan",     'w', Carrier::numeric,    1, ""},
    {"ln",          'm', Carrier::numeric,    1, ""},
    {"log",         'n', Carrier::numeric,    1, ""},
    {"int",         'o', Carrier::numeric,    1, ""},
    {"deci",        'p', Carrier::numeric,    1, ""},
    {"preci",       'u', Carrier::arithmetic, 1, "1"},
    {"mod",         'r', Carrier::arithmetic, 1, "1"},
    {"strcase",     'C', Carrier::arithmetic, 2, "0"},
    {"strlen",      'L', Carrier::numeric,    2, ""},
    {"strsub",      'U', Carrier::text,       2, "0"},
    {"strtrim",     'T', Carrier::text,       2, "202"},
    {"strcat",      'A', Carrier::text,       2, "2"},
    {"strtrims",    'S', Carrier::text,       2, ""},
    {"strmismatch", 'M', Carrier::text,       2, "20"},
    {"strfind",     'F', Carrier::text,       2, "202"},
    {"strreplace",  'R', Carrier::text,       2, "22002"},
    {"strdelete",   'D', Carrier::text,       2, "2"},
    {"strinsert",   'Y', Carrier::text,       2, "202"},
    {"r2s",         'V', Carrier::text,       1, "0"},
    {"s2r",         'Z', Carrier::text,       2, ""},
    {"strsubn",     'N', Carrier::text,       2, "202"},
    {"left",        'l', Carrier::text,       2, "0"},
    {"right",       'i', Carrier::text,       2, "0"},
    {"strfindn",    'f', Carrier::text,       2, "2"},
    {"not",         'j', Carrier::numeric,    1, ""},
    {"if",          'h', Carrier::text,       1, "1"},
};

// Where an operand is due, an operator acts as the function of its first byte, if there is one.
const Word operators[] = {
    {"like",  "like",  code_like,  'l', 0.0},
    {"equal", "equal", code_equal, 'e', 0.0},
    {"and",   "and",   code_and,   0,   0.0},
    {"or",    "or",    code_or,    'o', 0.0},
    {">=",    ">=",    code_ge,    0,   0.0},
    {"<=",    "<=",    code_le,    0,   0.0},
    {"<>",    "<>",    code_ne,    0,   0.0},
    {"<",     "<",     '<',        0,   0.0},
    {">",     ">",     '>',        0,   0.0},
    {"=",     "=",     '=',        0,   0.0},
};

const Word constants[] = {
    {"pi",  "3.14159265358979323846", 0, 0, 3.14159265358979323846},
    {"exp", "2.71828",                0, 0, 2.71828},
};
// clang-format on

bool is_name(const char* name, const std::string& wanted) {
    std::size_t i = 0;
    while (i < wanted.size() && name[i] != '\0' && name[i] == to_lower(wanted[i])) ++i;
    return i == wanted.size() && name[i] == '\0';
}

}  // namespace

const Function* function_of_code(char code) {
    for (const Function& row : functions) {
        if (row.code == code) return &row;
    }
    return nullptr;
}

std::optional<Word> find_word(const std::string& name) {
    for (const Function& row : functions) {
        const char code = row.code;
        if (is_name(row.name, name)) return Word{row.name, {code}, code, code, 0.0};
    }
    for (const Word& row : operators) {
        if (is_name(row.name, name)) return row;
    }
    for (const Word& row : constants) {
        if (is_name(row.name, name)) return row;
    }
    return std::nullopt;
}

}  // namespace model
