#include "benchmarks/workload.h"

#include <algorithm>
#include <random>

namespace bench {
namespace {

std::string replaced(std::string text, const std::string& what, const std::string& by) {
    for (std::size_t at = text.find(what); at != std::string::npos;
         at = text.find(what, at + by.size())) {
        text.replace(at, what.size(), by);
    }
    return text;
}

Formula same(const char* label, const std::string& text, std::vector<std::string> names) {
    const std::string lua = replaced(replaced(text, "sqrt", "math.sqrt"), "ln(", "math.log(");
    return {label, text, replaced(text, "ln(", "log("), lua, std::move(names)};
}

std::vector<std::string> numbered(int count) {
    std::vector<std::string> names;
    for (int i = 1; i <= count; ++i) names.push_back(std::string("name").append(std::to_string(i)));
    return names;
}

std::string joined(const std::vector<std::string>& parts, const std::string& signs) {
    std::string text = parts[0];
    for (std::size_t i = 1; i < parts.size(); ++i) text += signs[i % signs.size()] + parts[i];
    return text;
}

std::string products(const std::vector<std::string>& names, std::size_t size) {
    std::string text = names[0];
    for (std::size_t i = 1; text.size() + 14 < size; ++i) {
        text += '+' + names[i % names.size()] + '*' + names[(i * 7 + 3) % names.size()];
    }
    return text;
}

// Nothing that a contestant could fold into one operation.
std::string nested(int depth) {
    std::string text = std::string(static_cast<std::size_t>(depth), '(') + "a";
    for (int i = 0; i < depth; ++i) text += i % 2 == 0 ? "+b)" : "*c)";
    return text;
}

std::vector<Formula> make_twelve() {
    std::vector<Formula> all;
    all.push_back(same("numbers", "1+2*3", {}));
    all.push_back(same("one name", "a*3", {"a"}));
    all.push_back(same("four names", "(a+b)*c-d/2", {"a", "b", "c", "d"}));
    all.push_back(same("root", "sqrt(a^2+b^2)", {"a", "b"}));
    all.push_back(
        {"trigonometric",
         "sin(a)*cos(b)+tan(c)",
         "sin(a*0.017453292519943295)*cos(b*0.017453292519943295)+tan(c*0.017453292519943295)",
         "math.sin(a*0.017453292519943295)*math.cos(b*0.017453292519943295)+math.tan(c*0."
         "017453292519943295)",
         {"a", "b", "c"}});
    all.push_back(same("powers", "a^2.5+b^0.5-c^1.5", {"a", "b", "c"}));
    all.push_back(same("20 names", joined(numbered(20), "+-*"), numbered(20)));
    all.push_back(same("products", products({"alpha", "beta", "gamma", "delta", "omega"}, 500),
                       {"alpha", "beta", "gamma", "delta", "omega"}));
    all.push_back(same("40 deep", nested(40), {"a", "b", "c"}));
    all.push_back({"conditions",
                   "(a > 2) and (b > 3)",
                   "(a > 2) & (b > 3)",
                   "(a > 2 and b > 3) and 1 or 0",
                   {"a", "b"}});
    all.push_back({"functions",
                   "sqrt(a)+ln(b)*int(c)",
                   "sqrt(a)+log(b)*floor(c)",
                   "math.sqrt(a)+math.log(b)*math.floor(c)",
                   {"a", "b", "c"}});
    all.push_back(same("50 summed", joined(numbered(50), "+"), numbered(50)));
    return all;
}

// Sums, products, quotients, powers, roots and logarithms of names and numbers, in parentheses or
// not, by a fixed rule.
std::vector<Formula> make_pool() {
    static const std::vector<std::string> names = {"a",    "b",     "x",   "y",
                                                   "rate", "price", "qty", "total"};
    static const std::vector<std::string> powers = {"^2", "^3", "^0.5", "^1.5"};
    std::mt19937 random(64);
    const auto pick = [&](unsigned count) { return static_cast<unsigned>(random() % count); };
    std::vector<Formula> all;
    while (all.size() < 64) {
        const unsigned operands = 2 + pick(9);
        std::string text;
        std::vector<std::string> used;
        unsigned open = 0;
        unsigned roots = 0;  // the parenthesis of the outermost root that is open
        for (unsigned i = 0; i < operands; ++i) {
            // No root of a negative number, which the contestants take differently.
            if (i > 0) text += (roots > 0 ? "++*/+*" : "+-*/+*")[pick(6)];
            if (i + 1 < operands && pick(4) == 0) {
                const bool root = pick(3) == 0;
                text += root ? "sqrt(" : "(";
                if (root && roots == 0) roots = open + 1;
                ++open;
            }
            if (pick(3) == 0) {
                text += std::to_string(1 + pick(99));
                if (pick(3) == 0) text += ".5";
            } else {
                const std::string& name = names[pick(8)];
                text += pick(8) == 0 ? "ln(" + name + ")" : name;
                if (std::find(used.begin(), used.end(), name) == used.end()) used.push_back(name);
                if (pick(6) == 0) text += powers[pick(4)];
            }
            if (open > 0 && i > 0 && pick(2) == 0) {
                text += ')';
                if (roots == open) roots = 0;
                --open;
            }
        }
        text.append(open, ')');
        if (text.size() < 7 || text.size() > 60 || used.empty()) continue;
        all.push_back(same("pool", text, used));
    }
    return all;
}

std::vector<Definition> make_batch() {
    std::vector<Definition> all = {{"v1", same("given", "1.5", {})}};
    for (int i = 2; i <= 50; ++i) {
        const std::string before = std::string("v") + std::to_string(i - 1);
        const std::string half = std::string("v") + std::to_string(i / 2);
        std::vector<std::string> names = {before};
        if (half != before) names.push_back(half);
        all.push_back(
            {std::string("v") + std::to_string(i), same("batch", before + "*0.5+" + half, names)});
    }
    return all;
}

}  // namespace

const std::vector<Formula>& twelve() {
    static const std::vector<Formula> all = make_twelve();
    return all;
}

const std::vector<Formula>& pool() {
    static const std::vector<Formula> all = make_pool();
    return all;
}

const std::vector<TextFormula>& texts() {
    static const std::vector<TextFormula> all = {
        {"substring", "strsub(s, 40, 20)", "string.sub(s, 40, 59)", true},
        {"find", "strfind(\"needle\", s)", "(string.find(s, \"needle\", 1, true))", false},
        {"replace", "strreplace(\"pin\", \"needle\", s, 1, 1)",
         "(string.gsub(s, \"needle\", \"pin\"))", true},
        {"concatenation", "strcat(s, t, s)", "s..t..s", true},
        {"equality", "s equal t", "(s == t) and 1 or 0", false},
    };
    return all;
}

const std::vector<Definition>& batch() {
    static const std::vector<Definition> all = make_batch();
    return all;
}

void fill(std::vector<double>& values, unsigned round) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = 1.1 + static_cast<double>((i * 37 + round * 101) % 997) / 285.0;
    }
}

}  // namespace bench
