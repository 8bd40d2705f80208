#include "tests/random_formulas.h"

#include <cmath>
#include <iterator>
#include <limits>

#include <morandel.h>

namespace morandel::tests {
// What is random is drawn in statements of their own, so that all compilers draw in one order.
namespace {

constexpr const char* names[] = {"a", "b", "s", "t", "rate", "\xD6\xD0", "v", "x\x81", "a>b"};
constexpr const char* texts[] = {"",
                                 "a",
                                 "ab",
                                 "abcab",
                                 "AbC",
                                 " b ",
                                 "12.5 kg",
                                 "0x1p3",
                                 "-nan",
                                 "inf",
                                 "1e400",
                                 "pi",
                                 "exp",
                                 "sin",
                                 "left",
                                 "like",
                                 "and",
                                 "or",
                                 "strcat",
                                 "if",
                                 "=",
                                 "a,b,,c",
                                 "\xD6\xD0"
                                 "a",
                                 "\x81",
                                 "\t a \n",
                                 "aaaa",
                                 "-",
                                 "1000000",
                                 "STRSUB",
                                 "mod",
                                 "\x81"
                                 "B\xA1\xA1"};
constexpr const char* numerals[] = {"0",
                                    "1",
                                    "2",
                                    "3",
                                    "4",
                                    "5",
                                    "7",
                                    "0.5",
                                    "2.5",
                                    "2.675",
                                    "0.9999",
                                    "1000000",
                                    "1000000.5",
                                    "90",
                                    "45",
                                    "3000000000",
                                    "15",
                                    "16",
                                    "5.",
                                    "007",
                                    "1e5",
                                    "0.1234567890123456789",
                                    "99999999999999999999"};
constexpr const char* operators[] = {"+",     "-",    "*",      "/",      "^",    "^",
                                     " > ",   " < ",  " = ",    " >= ",   " <= ", " <> ",
                                     " and ", " or ", " like ", " equal "};
constexpr const char* whole_formulas[] = {"pi",
                                          "exp",
                                          "pi+1",
                                          "exp+pi",
                                          "1+pi",
                                          "strlen(pi)",
                                          "strlen(exp)",
                                          "-pi",
                                          "pi like \"3\"",
                                          "s+pi",
                                          "a+pi",
                                          "sqrt(-pi)",
                                          "r2s(pi)",
                                          "5!",
                                          "5!+",
                                          "0!",
                                          "3!!",
                                          "1,2",
                                          "(1,2,3)",
                                          "strsub(\"abc\",(1,2),1)",
                                          "strsub(\"abc\",1,(2,3))",
                                          "left(\"abcd\",2)",
                                          "right(s,2)",
                                          "left(strcase(\"abcd\",0),2)",
                                          "if(1,2)",
                                          "if(1)",
                                          "if(0,1,2)",
                                          "strcat(s)",
                                          "strcat(s,t)",
                                          "strfind(\"a\",\"aaa\",1000000.5)",
                                          "strmismatch(\"a\",\"a\",1000000.5)",
                                          "\"abc",
                                          "1+\"abc",
                                          "",
                                          " ",
                                          "(",
                                          ")",
                                          "()",
                                          "1 2",
                                          "a b",
                                          "a(1)",
                                          "1(2)",
                                          "or 1",
                                          "like(s)",
                                          "\"sin\"(30)",
                                          "x%2",
                                          "1\r2",
                                          "a!",
                                          "a^0",
                                          "s^0",
                                          "s",
                                          "t",
                                          "a",
                                          "s like t",
                                          "a equal b",
                                          "r2s(1.25)",
                                          "strdelete(\"b\")",
                                          "strtrim(\"b\")",
                                          "mod(7)",
                                          "preci(2.675)",
                                          "strcase(s,0)",
                                          "strlen(s,1)",
                                          "10^308*10",
                                          "a*b",
                                          "a+b*rate",
                                          "sqrt(a)+rate^2",
                                          "v+1",
                                          "a>b",
                                          "1+",
                                          "1*",
                                          "1^",
                                          "1 and",
                                          "s like",
                                          "strlen(",
                                          "int(a)^2"};

// A strcat can double a text.
constexpr int most_strcats = 4;

}  // namespace

std::string RandomFormulas::name() {
    if (!more_names.empty() && below(2) == 0) return pick(more_names);
    return pick(names);
}

std::string RandomFormulas::text() {
    if (below(4) != 0) return pick(texts);
    std::string text;
    for (std::size_t left = below(12); left > 0; --left) {
        const auto byte = static_cast<char>(below(3) == 0 ? below(255) + 1 : 'a' + below(4));
        if (byte != '"') text += byte;
    }
    return text;
}

double RandomFormulas::number() {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double limits[] = {
        0.0,     -0.0,     1.0,    -1.0,      2.0,       3.0,      0.5,       2.675, 1e308, -1e308,
        1.7e308, 1.75e308, 90.0,   1000000.0, 1000000.5, infinity, -infinity, NAN,   1e-15, 1e-21,
        5e-20,   0x1p-13,  0x1p53, 3e9,       -3e9,      0.9999,   170.0,     1e16};
    if (below(3) != 0) return pick(limits);
    if (below(2) == 0) return static_cast<double>(below(2000)) / 8.0 - 100.0;
    const double mantissa = static_cast<double>(m_random()) - 2e9;
    return std::ldexp(mantissa, static_cast<int>(below(120)) - 90);
}

std::string RandomFormulas::operand(char kind) {
    const bool wants_text = (kind == 't') != (below(16) == 0);
    switch (below(8)) {
        case 0:
            return below(2) == 0 ? "pi" : "exp";
        case 1:
        case 2:
            return name();
        case 3:
            if (below(24) == 0) return "1" + std::string(308, '0');
            [[fallthrough]];
        default:
            return wants_text ? '"' + text() + '"' : std::string(pick(numerals));
    }
}

// Of the kinds of a function's row.
std::string RandomFormulas::arguments(std::string_view kinds, int depth) {
    std::string list;
    const bool random_count = below(12) == 0;
    for (const char kind : kinds) {
        if (kind == '[' && below(2) == 0) break;
        if (kind == '[') continue;
        if (random_count && below(3) == 0) continue;
        if (!list.empty()) list += ',';
        if (below(24) == 0) {
            list += '(' + expression('n', 0) + ',';
            list += expression(kind == 'n' ? 'n' : 't', 0) + ')';
        } else {
            list += expression(kind == '*' ? 't' : kind, depth - 1);
        }
    }
    if (random_count && below(2) == 0) list += ',' + expression('n', 0);
    return list;
}

std::string RandomFormulas::call(char kind, int depth) {
    const Function* row = &pick(functions());
    const auto fits = [&] {
        constexpr std::string_view text_givers = "CUTASRDYVNli";
        const bool gives_text = text_givers.find(row->code) != std::string_view::npos;
        return gives_text == (kind == 't');
    };
    for (int tries = 0; tries < 4 && !fits(); ++tries) row = &pick(functions());
    if (row->name == "strcat" && ++m_strcats > most_strcats) return operand(kind);
    std::string name(row->name);
    if (below(16) == 0) name[0] = static_cast<char>(name[0] - 'a' + 'A');
    if (below(40) == 0) name = '"' + name + '"';
    if (below(24) == 0) return name + ' ' + operand(row->kinds[0]);
    return name + '(' + arguments(row->kinds, depth) + ')';
}

std::string RandomFormulas::expression(char kind, int depth) {
    if (depth <= 0 || below(4) == 0) return operand(kind);
    switch (below(kind == 't' ? 4 : 10)) {
        case 0:
        case 1:
        case 2:
            return call(kind, depth);
        case 3:
            return '(' + expression(kind, depth - 1) + ')';
        case 4: {
            const char* const sign = below(2) == 0 ? "-" : "+";
            return sign + expression(kind, depth - 1);
        }
        case 5:
            return below(4) == 0 ? expression(kind, 0) + '!'
                                 : '(' + expression(kind, depth - 1) + ")^0";
        default: {
            const std::string_view sign = pick(operators);
            const char side = sign == " like " || sign == " equal " ? 't' : 'n';
            std::string both = expression(side, depth - 1);
            both += sign;
            both += expression(side, depth - 1);
            return both;
        }
    }
}

std::string RandomFormulas::soup() {
    std::string formula;
    for (std::size_t left = 1 + below(12); left > 0; --left) {
        switch (below(6)) {
            case 0:
                formula += pick(operators);
                break;
            case 1:
                formula += pick("()(),!%\"");
                break;
            case 2:
                formula += pick(functions()).name;
                break;
            default:
                formula += operand(below(2) == 0 ? 't' : 'n');
                break;
        }
        if (below(3) == 0) formula += ' ';
    }
    return formula.substr(0, formula.find('\0'));
}

void RandomFormulas::mutate(std::string& formula) {
    if (formula.empty()) return;
    const std::size_t at = below(formula.size());
    switch (below(6)) {
        case 0:
            formula.erase(at, 1 + below(3));
            break;
        case 1:
            formula.insert(at, 1, "(),+-*/^!% \"\r.x1\x81\xD6"[below(17)]);
            break;
        case 2:
            formula[at] = static_cast<char>(1 + below(255));
            break;
        case 3:
            formula.resize(at);
            break;
        case 4: {
            const std::uint32_t from = below(formula.size());
            formula.insert(at, formula.substr(from, below(20)));
            break;
        }
        default:
            const std::uint32_t count = below(600);
            formula.insert(at, std::string(count, pick("n1 (")));
            formula = formula.substr(0, formula.find('\0'));
            break;
    }
}

std::string RandomFormulas::formula() {
    m_strcats = 0;
    if (!m_earlier.empty() && below(5) == 0) return pick(m_earlier);
    std::string formula;
    const auto kind = below(16);
    if (kind < 5) {
        formula = pick(whole_formulas);
    } else if (kind == 5) {
        formula = soup();
    } else {
        const char wanted = below(3) == 0 ? 't' : 'n';
        formula = expression(wanted, static_cast<int>(below(5)));
    }
    if (below(8) == 0) mutate(formula);
    if (m_earlier.size() < 32) {
        m_earlier.push_back(formula);
    } else {
        m_earlier[below(32)] = formula;
    }
    return formula;
}

}  // namespace morandel::tests
