#include "language/functions.h"

#include <algorithm>
#include <iterator>

#include "base/characters.h"
#include "language/characters.h"
#include "language/words.h"

namespace morandel {
namespace {

// Deliberate: what the checker records differs from the function's own name ("strims", "Trim",
// "R2S", "S2R") and fault (of strtrim and r2s); left, right and if leave their steps open; and mod,
// strlen and strdelete are checked as they are.
// clang-format off
constexpr FunctionRow function_table[] = {
    // name, code, kinds of arguments, types of variables as first and further arguments, arguments, help, example
    // what carries it out, what the checker departs in
    {{"sin", 's', "n", 1, "", "degrees", "sine of an angle in degrees", "sin(30)"}, sine},
    {{"cos", 'c', "n", 1, "", "degrees", "cosine of an angle in degrees", "cos(60)"}, cosine},
    {{"tan", 't', "n", 1, "", "degrees", "tangent of an angle in degrees", "tan(45)"}, tangent},
    {{"ctan", 'e', "n", 1, "", "degrees", "cotangent of an angle in degrees", "ctan(45)"}, cotangent},
    {{"sqrt", 'q', "n", 1, "", "x", "square root", "sqrt(2)"}, square_root},
    {{"arcsin", 'x', "n", 1, "", "x", "angle in degrees whose sine is x", "arcsin(0.5)"}, arc_sine},
    {{"arccos", 'y', "n", 1, "", "x", "angle in degrees whose cosine is x", "arccos(0.5)"}, arc_cosine},
    {{"arctan", 'z', "n", 1, "", "x", "angle in degrees whose tangent is x", "arctan(1)"}, arc_tangent},
    {{"arcctan", 'w', "n", 1, "", "x", "angle in degrees whose cotangent is x", "arcctan(1)"}, arc_cotangent},
    {{"ln", 'm', "n", 1, "", "x", "natural logarithm", "ln(10)"}, natural_logarithm},
    {{"log", 'n', "n", 1, "", "x", "logarithm to base 10", "log(1000)"}, decimal_logarithm},
    {{"int", 'o', "n", 1, "", "x", "integer part, x being rounded to six decimals first", "int(-3.7)"}, integer_part},
    {{"deci", 'p', "n", 1, "", "x", "decimals without the sign", "deci(-3.25)"}, decimal_part},
    {{"preci", 'u', "nn", 1, "1", "x, decimals", "x rounded to so many decimals (0 to 15), halves away from zero",
      "preci(2.675, 2)"}, preci, {.tells_error = false}},
    {{"mod", 'r', "nn", 1, "1", "x, divisor", "remainder of a division, with the sign of x", "mod(-7, 3)"},
     mod, {.tells_error = false}},
    {{"strcase", 'C', "t[n", 2, "0", "text[, 0]", "text in upper case, with 0 in lower case", "strcase(\"Abc\")"},
     strcase, {.result_kind = kind_text, .tells_error = false}},
    {{"strlen", 'L', "t", 2, "", "text", "length in bytes", "strlen(\"abc\")"}, strlen, {.tells_error = false}},
    {{"strsub", 'U', "tnn[n", 2, "0", "text, start, length[, direction]",
      "part of a text; length -1 takes the rest, direction 0 counts from the end", "strsub(\"abcdef\", 2, 3)"},
     strsub, {.kinds = "tn[nn", .result_kind = kind_text}},
    {{"strtrim", 'T', "tt[n", 2, "202", "piece, text[, side]",
      "text without that piece at its start, with side 0 at its end", "strtrim(\"ab\", \"abcab\", 0)"},
     strtrim, {.result_kind = kind_text, .first_fault = 1, .name = "Trim"}},
    {{"strcat", 'A', "tt*", 2, "2", "text, text, ...", "all texts joined", "strcat(\"ab\", \"cd\", \"ef\")"},
     strcat, {.kinds = "t[t*", .result_kind = kind_text}},
    {{"strtrims", 'S', "t", 2, "", "text", "text without white space at both ends", "strtrims(\"  ab \")"},
     strtrims, {.result_kind = kind_text, .name = "strims"}},
    {{"strmismatch", 'M', "tt[nnn", 2, "20", "text, other[, start, other start, mode]",
      "length of the common beginning; mode 0 minds the case", "strmismatch(\"abcd\", \"abxd\")"},
     strmismatch, {.result_kind = kind_open}},
    {{"strfind", 'F', "tt[n", 2, "202", "piece, text[, start]", "position of a piece in a text, from 1, or -1",
      "strfind(\"cd\", \"abcd\")"}, strfind, {.result_kind = kind_open}},
    {{"strreplace", 'R', "ttt[nn", 2, "22002", "new, old, text[, start, mode]",
      "text with old replaced by new; mode 0 replaces the first only", "strreplace(\"x\", \"b\", \"abcb \")"},
     strreplace, {.kinds = "t[ttnn", .result_kind = kind_text}},
    {{"strdelete", 'D', "tt", 2, "2", "piece, text", "text without any occurrence of the piece",
      "strdelete(\"b\", \"abcb\")"}, strdelete, {.kinds = "t?*", .result_kind = kind_text}},
    {{"strinsert", 'Y', "ttn", 2, "202", "text, piece, offset",
      "text with the piece inserted before the byte at offset, from 0", "strinsert(\"abcd\", \"xy\", 2)"},
     strinsert, {.result_kind = kind_text}},
    {{"r2s", 'V', "n[n", 1, "0", "x[, decimals]", "number as text with at most so many decimals, the rest cut off",
      "r2s(123.456, 2)"}, r2s, {.result_kind = kind_text, .first_fault = 2, .name = "R2S"}},
    {{"s2r", 'Z', "t", 2, "", "text", "number at the start of a text", "s2r(\"12.5 kg\")"}, s2r, {.name = "S2R"}},
    {{"strsubn", 'N', "ttn", 2, "202", "text, separator, n", "n-th piece of a text split at a separator",
      "strsubn(\"a,b,c\", \",\", 2)"}, strsubn, {.result_kind = kind_text}},
    {{"left", 'l', "tn", 2, "0", "text, n", "first n bytes; fails unless another number is pending besides n",
      "left(strcase(\"abcd\", 0), 2)"}, left, {.closes_step = false}},
    {{"right", 'i', "tn", 2, "0", "text, n", "last n bytes; fails unless another number is pending besides n",
      "right(strcase(\"abcd\", 0), 2)"}, right, {.closes_step = false}},
    {{"strfindn", 'f', "tt", 2, "2", "piece, text", "number of occurrences of a piece in a text",
      "strfindn(\"ab\", \"abcab\")"}, strfindn, {.kinds = "tt[n"}},
    {{"not", 'j', "n", 1, "", "x", "1 for 0, else 0", "not(0)"}, logical_not},
    {{"if", 'h', "nnn", 1, "1", "condition, then, else", "second argument where the first is not 0, else the third",
      "if(2 > 1, 10, 20)"}, choose, {.kinds = "nnn[nn", .closes_step = false}},
};

constexpr Word constant_table[] = {
    {"pi",  NameKey("pi"),  {TokenClass::constant}, "3.14159265358979323846", 3.14159265358979323846},
    {"exp", NameKey("exp"), {TokenClass::constant}, "2.71828",                2.71828},
};
// clang-format on

constexpr auto public_rows = [] {
    std::array<Function, std::size(function_table)> rows{};
    std::ranges::copy(function_table, rows.begin());
    return rows;
}();

// Operators whose first byte begins a name are found as names are.
constexpr bool is_word(const Operator& row) { return is_any(row.text[0], name_start); }

constexpr std::size_t word_count =
    std::size(function_table) + std::size(constant_table) +
    static_cast<std::size_t>(std::ranges::count_if(operator_table, is_word));

constexpr TokenKind kind_of(const Operator& row) {
    return {TokenClass::delimiter, row.code, row.prefix, row.level};
}

constexpr auto words = [] {
    std::array<Word, word_count> words{};
    auto* next = std::ranges::copy(constant_table, words.data()).out;
    for (const FunctionRow& row : function_table) {
        const TokenKind kind{TokenClass::delimiter, row.code, row.code};
        *next++ = {row.name, NameKey(row.name), kind, {&row.code, 1}};
    }
    for (const Operator& row : operator_table) {
        if (is_word(row)) *next++ = {row.text, NameKey(row.text), kind_of(row), row.text};
    }
    return words;
}();

// Open addressing over the words; an entry holds a word's place plus one.
constexpr auto word_index = [] {
    std::array<std::uint8_t, NameKey::hashes> index{};
    for (std::size_t place = 0; place < word_count; ++place) {
        std::size_t at = words[place].key.hash();
        while (index[at] != 0) at = (at + 1) % index.size();
        index[at] = static_cast<std::uint8_t>(place + 1);
    }
    return index;
}();

}  // namespace

constexpr std::array<std::uint16_t, 256> lengths_of_words = [] {
    std::array<std::uint16_t, 256> lengths{};
    for (const Word& word : words) {
        for (const char first : {word.name[0], to_upper(word.name[0])}) {
            auto& known = lengths[static_cast<unsigned char>(first)];
            known = static_cast<std::uint16_t>(known | 1U << word.name.size());
        }
    }
    return lengths;
}();

constexpr std::array<TokenKind, 256> kinds_of_bytes = [] {
    std::array<TokenKind, 256> kinds{};
    for (std::size_t byte = 0; byte < kinds.size(); ++byte) {
        const char code = static_cast<char>(byte);
        if (is_any(code, name_start)) kinds[byte] = {TokenClass::name};
        if (is_any(code, single)) kinds[byte] = {TokenClass::delimiter, code};
    }
    for (const Operator& row : operator_table) {
        if (row.text.size() == 1) kinds[static_cast<unsigned char>(row.text[0])] = kind_of(row);
    }
    for (const Word& word : words) {
        if (word.name.size() == 1 && word.kind.level == Level::none) throw "a word of one letter";
    }
    return kinds;
}();

constexpr std::array<const FunctionRow*, code_limit> function_index = [] {
    std::array<const FunctionRow*, code_limit> rows{};
    for (const FunctionRow& row : function_table) {
        auto& entry = rows[static_cast<unsigned char>(row.code)];
        if (entry != nullptr || operator_index[static_cast<unsigned char>(row.code)] != 0)
            throw "a code stands twice";
        entry = &row;
    }
    return rows;
}();

int FunctionRow::kind_at(std::size_t commas) const {
    const std::string_view all = check.kinds;
    std::size_t place = commas < all.find('[') ? commas : commas + 1;
    if (all.ends_with('*')) place = std::min(place, all.size() - 2);
    if (place >= all.size() || all[place] == '?') return -1;
    return all[place] == 't' ? kind_text : kind_number;
}

ArgumentCounts argument_counts(std::string_view kinds) {
    const std::size_t fewest = std::min(kinds.find_first_of("[*"), kinds.size());
    if (kinds.ends_with('*')) return {fewest, static_cast<std::size_t>(-1)};
    return {fewest, fewest == kinds.size() ? fewest : kinds.size() - 1};
}

Table<Function> functions() { return {public_rows.data(), public_rows.size()}; }

const Function* find_function(std::string_view name) {
    const Word* word = find_word(name);
    const FunctionRow* row = word == nullptr ? nullptr : function_of_code(word->kind.code);
    return row == nullptr ? nullptr : &public_rows[static_cast<std::size_t>(row - function_table)];
}

const Word* look_up_word(std::string_view name) {
    const NameKey key = NameKey(name).lower();
    for (std::size_t at = key.hash(); word_index[at] != 0; at = (at + 1) % word_index.size()) {
        const Word& word = words[word_index[at] - 1U];
        if (word.key == key) return &word;
    }
    return nullptr;
}

}  // namespace morandel
