#include "engine/functions.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>

#include "engine/characters.h"
#include "engine/name_key.h"

namespace morandel {
namespace {

// clang-format off
constexpr Function function_table[] = {
    // name        code  carrier              kinds    1st further  arguments and help
    {"sin",         's', Carrier::numeric,    "n",     1, "",      "degrees",                           "sine of an angle in degrees",                                        "sin(30)"},
    {"cos",         'c', Carrier::numeric,    "n",     1, "",      "degrees",                           "cosine of an angle in degrees",                                      "cos(60)"},
    {"tan",         't', Carrier::numeric,    "n",     1, "",      "degrees",                           "tangent of an angle in degrees",                                     "tan(45)"},
    {"ctan",        'e', Carrier::numeric,    "n",     1, "",      "degrees",                           "cotangent of an angle in degrees",                                   "ctan(45)"},
    {"sqrt",        'q', Carrier::numeric,    "n",     1, "",      "x",                                 "square root",                                                        "sqrt(2)"},
    {"arcsin",      'x', Carrier::numeric,    "n",     1, "",      "x",                                 "angle in degrees whose sine is x",                                   "arcsin(0.5)"},
    {"arccos",      'y', Carrier::numeric,    "n",     1, "",      "x",                                 "angle in degrees whose cosine is x",                                 "arccos(0.5)"},
    {"arctan",      'z', Carrier::numeric,    "n",     1, "",      "x",                                 "angle in degrees whose tangent is x",                                "arctan(1)"},
    {"arcctan",     'w', Carrier::numeric,    "n",     1, "",      "x",                                 "angle in degrees whose cotangent is x",                              "arcctan(1)"},
    {"ln",          'm', Carrier::numeric,    "n",     1, "",      "x",                                 "natural logarithm",                                                  "ln(10)"},
    {"log",         'n', Carrier::numeric,    "n",     1, "",      "x",                                 "logarithm to base 10",                                               "log(1000)"},
    {"int",         'o', Carrier::numeric,    "n",     1, "",      "x",                                 "integer part, x being rounded to six decimals first",                "int(-3.7)"},
    {"deci",        'p', Carrier::numeric,    "n",     1, "",      "x",                                 "decimals without the sign",                                          "deci(-3.25)"},
    {"preci",       'u', Carrier::arithmetic, "nn",    1, "1",     "x, decimals",                       "x rounded to so many decimals (0 to 15), halves away from zero",     "preci(2.675, 2)"},
    {"mod",         'r', Carrier::arithmetic, "nn",    1, "1",     "x, divisor",                        "remainder of a division, with the sign of x",                        "mod(-7, 3)"},
    {"strcase",     'C', Carrier::arithmetic, "t[n",   2, "0",     "text[, 0]",                         "text in upper case, with 0 in lower case",                           "strcase(\"Abc\")"},
    {"strlen",      'L', Carrier::numeric,    "t",     2, "",      "text",                              "length in bytes",                                                    "strlen(\"abc\")"},
    {"strsub",      'U', Carrier::text,       "tnn[n", 2, "0",     "text, start, length[, direction]",  "part of a text; length -1 takes the rest, direction 0 counts from the end", "strsub(\"abcdef\", 2, 3)"},
    {"strtrim",     'T', Carrier::text,       "tt[n",  2, "202",   "piece, text[, side]",               "text without that piece at its start, with side 0 at its end",       "strtrim(\"ab\", \"abcab\", 0)"},
    {"strcat",      'A', Carrier::text,       "tt*",   2, "2",     "text, text, ...",                   "all texts joined",                                                   "strcat(\"ab\", \"cd\", \"ef\")"},
    {"strtrims",    'S', Carrier::text,       "t",     2, "",      "text",                              "text without white space at both ends",                              "strtrims(\"  ab \")"},
    {"strmismatch", 'M', Carrier::text,       "tt[nnn", 2, "20",   "text, other[, start, other start, mode]", "length of the common beginning; mode 0 minds the case",        "strmismatch(\"abcd\", \"abxd\")"},
    {"strfind",     'F', Carrier::text,       "tt[n",  2, "202",   "piece, text[, start]",              "position of a piece in a text, from 1, or -1",                       "strfind(\"cd\", \"abcd\")"},
    {"strreplace",  'R', Carrier::text,       "ttt[nn", 2, "22002", "new, old, text[, start, mode]",    "text with old replaced by new; mode 0 replaces the first only",      "strreplace(\"x\", \"b\", \"abcb \")"},
    {"strdelete",   'D', Carrier::text,       "tt",    2, "2",     "piece, text",                       "text without any occurrence of the piece",                           "strdelete(\"b\", \"abcb\")"},
    {"strinsert",   'Y', Carrier::text,       "ttn",   2, "202",   "text, piece, offset",               "text with the piece inserted before the byte at offset, from 0",     "strinsert(\"abcd\", \"xy\", 2)"},
    {"r2s",         'V', Carrier::text,       "n[n",   1, "0",     "x[, decimals]",                     "number as text with at most so many decimals, the rest cut off",     "r2s(123.456, 2)"},
    {"s2r",         'Z', Carrier::text,       "t",     2, "",      "text",                              "number at the start of a text",                                      "s2r(\"12.5 kg\")"},
    {"strsubn",     'N', Carrier::text,       "ttn",   2, "202",   "text, separator, n",                "n-th piece of a text split at a separator",                          "strsubn(\"a,b,c\", \",\", 2)"},
    {"left",        'l', Carrier::text,       "tn",    2, "0",     "text, n",                           "first n bytes; fails unless another number is pending besides n",  "left(strcase(\"abcd\", 0), 2)"},
    {"right",       'i', Carrier::text,       "tn",    2, "0",     "text, n",                           "last n bytes; fails unless another number is pending besides n",   "right(strcase(\"abcd\", 0), 2)"},
    {"strfindn",    'f', Carrier::text,       "tt",    2, "2",     "piece, text",                       "number of occurrences of a piece in a text",                         "strfindn(\"ab\", \"abcab\")"},
    {"not",         'j', Carrier::numeric,    "n",     1, "",      "x",                                 "1 for 0, else 0",                                                    "not(0)"},
    {"if",          'h', Carrier::text,       "nnn",   1, "1",     "condition, then, else",             "second argument where the first is not 0, else the third",           "if(2 > 1, 10, 20)"},
};

// Deliberate: where an operand is due, only the first byte of a word operator counts; like acts
// as left, equal as ctan, or as int.
constexpr Word operator_table[] = {
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

constexpr Word constant_table[] = {
    {"pi",  "3.14159265358979323846", 0, 0, 3.14159265358979323846},
    {"exp", "2.71828",                0, 0, 2.71828},
};
// clang-format on

constexpr std::size_t longest_name = 11;
constexpr std::size_t word_count =
    std::size(function_table) + std::size(operator_table) + std::size(constant_table);

constexpr std::array<Word, word_count> make_words() {
    std::array<Word, word_count> words{};
    auto* next = words.data();
    for (const Function& row : function_table) {
        *next++ = {row.name, {&row.code, 1}, row.code, row.code, 0.0};
    }
    next = std::ranges::copy(operator_table, next).out;
    std::ranges::copy(constant_table, next);
    return words;
}

constexpr std::array<Word, word_count> words = make_words();

static_assert(std::ranges::all_of(words,
                                  [](const Word& w) { return w.name.size() <= longest_name; }));

constexpr std::array<NameKey, word_count> make_keys() {
    std::array<NameKey, word_count> keys{};
    for (std::size_t i = 0; i < words.size(); ++i) keys[i] = NameKey(words[i].name);
    return keys;
}

constexpr std::array<NameKey, word_count> word_keys = make_keys();
static_assert(std::ranges::all_of(word_keys, &NameKey::is_whole_name));

// Open addressing over the words; a slot holds an index into them plus one.
constexpr std::size_t slot_count = NameKey::hashes;

constexpr std::array<std::uint8_t, slot_count> make_slots() {
    std::array<std::uint8_t, slot_count> slots{};
    for (std::size_t i = 0; i < words.size(); ++i) {
        std::size_t at = word_keys[i].hash();
        while (slots[at] != 0) at = (at + 1) % slot_count;
        slots[at] = static_cast<std::uint8_t>(i + 1);
    }
    return slots;
}

constexpr std::array<std::uint8_t, slot_count> word_slots = make_slots();

// For each first byte the lengths of the words that begin with it: most names are no words, and few
// of those get past this.
constexpr std::array<std::uint16_t, 256> make_lengths() {
    std::array<std::uint16_t, 256> lengths{};
    for (const Word& word : words) {
        for (const char first : {word.name[0], to_upper(word.name[0])}) {
            auto& known = lengths[static_cast<unsigned char>(first)];
            known = static_cast<std::uint16_t>(known | 1U << word.name.size());
        }
    }
    return lengths;
}

constexpr std::array<std::uint16_t, 256> lengths_of_words = make_lengths();

constexpr std::array<std::uint8_t, 128> make_code_rows() {
    std::array<std::uint8_t, 128> rows{};
    for (std::size_t i = 0; i < std::size(function_table); ++i) {
        rows[static_cast<unsigned char>(function_table[i].code)] = static_cast<std::uint8_t>(i + 1);
    }
    return rows;
}

constexpr std::array<std::uint8_t, 128> code_rows = make_code_rows();

}  // namespace

std::span<const Function> functions() {
    return function_table;
}

const Function* find_function(std::string_view name) {
    const Word* word = find_word(name);
    return word == nullptr ? nullptr : function_of_code(word->code);
}

const Function* function_of_code(char code) {
    const auto index = static_cast<unsigned char>(code);
    if (index >= code_rows.size() || code_rows[index] == 0) return nullptr;
    return &function_table[code_rows[index] - 1];
}

const Word* find_word(std::string_view name) {
    if (name.empty() || name.size() > longest_name) return nullptr;
    if ((lengths_of_words[static_cast<unsigned char>(name[0])] >> name.size() & 1) == 0) {
        return nullptr;
    }
    const NameKey key = NameKey(name).lower();
    for (std::size_t at = key.hash(); word_slots[at] != 0; at = (at + 1) % slot_count) {
        const std::size_t index = word_slots[at] - 1U;
        if (word_keys[index] == key) return &words[index];
    }
    return nullptr;
}

}  // namespace morandel
