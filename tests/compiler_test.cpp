// Which formulas are compiled, and which are left to tokenizer, grammar check and levels. What they
// give is the same either way, so only this tells whether the quick way is taken.

#include "engine/compiler.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <optional>
#include <string>

namespace {

using morandel::Parameters;
using morandel::Program;

Parameters parameters() {
    Parameters all;
    all.set_count(4);
    all.set_number(0, "a", 3.0);
    all.set_number(1, "rate", 0.5);
    all.set_number(2, "a parameter of sixteen", 1.0);
    all.set_text(3, "s", "text");
    return all;
}

// The value, where the formula is compiled and computed without an error.
std::optional<double> computed(const std::string& formula) {
    const Parameters all = parameters();
    const auto program = std::make_unique<Program>();
    double value = 0.0;
    if (!morandel::compile(formula.c_str(), all, *program).done || !program->run(value)) return {};
    return value;
}

TEST(Compiler, TakesFormulasOfNumbers) {
    const std::pair<const char*, double> formulas[] = {
        {"1+2*3", 7.0},
        {"(1+2)*3", 9.0},
        {"7-2-1", 4.0},
        {"12/3/2", 2.0},
        {"2^3^2", 512.0},
        {"2*3^2", 18.0},
        {"-2^2", 4.0},
        {"2^-2", 0.25},
        {"a*rate", 1.5},
        {" a * ( rate + 1 ) ", 4.5},
        {"2*pi", 2.0 * 3.14159265358979323846},
        {"a+exp", 3.0 + 2.71828},
        {"2*sqrt pi", 2.0 * std::sqrt(3.14159265358979323846)},
        {"sqrt(16)+sqrt 9", 7.0},
        {"SQRT(16)", 4.0},
        {"-(a)", -3.0},
        {"+a", 3.0},
        {"-rate*2", -1.0},
        {"int(2.5)", 2.0},
        {"not(0)", 1.0},
        {"1-a*2", -5.0},
        {"a*2-a*3", -3.0},
        {"a*2+a*3+1*5", 20.0},
        {"a*2-a/3", 5.0},
        {"(a > 2) and (rate < 1)", 1.0},
        {"a >= 3", 1.0},
        {"a <= 2", 0.0},
        {"a <> 3", 0.0},
        {"a = 3", 1.0},
        {"1 or 0", 1.0},
        {"a*2 > 1", 3.0},
        {"((((a))))", 3.0},
        {"5.", 5.0},
        {"2^0", 1.0},
        {"(int(a))*2", 6.0},
    };
    for (const auto& [formula, value] : formulas) {
        ASSERT_TRUE(computed(formula).has_value()) << formula;
        EXPECT_EQ(*computed(formula), value) << formula;
    }
}

TEST(Compiler, LeavesAllElse) {
    for (const char* formula :
         {"",          " ",           "x",        "s",         "\"text\"",  "pi",
          "exp+pi",    "1,2",         "5!",       "1 2",       "a b",       "a(1)",
          "(1",        "1)",          "()",       "1+",        "*1",        "--1",
          "-+1",       "- sin(1)",    "sin -1",   "sin",       "strlen(s)", "preci(a, 1)",
          "mod(a, 2)", "if(a, 1, 2)", "a like a", "1 equal 1", "1 > 2 > 3", "1 > 2^3",
          "2^3 > 1",   "1 > 2 and 3", "int(a)^0", "int(a)^2",  ".5",        "a%2",
          "a>b",       "1\r",         "1#",       "like(1)",   "or 1",      "and",
          "1 and",     "> 1"}) {
        EXPECT_FALSE(computed(formula).has_value()) << formula;
    }
}

TEST(Compiler, LeavesWhatIsAnErrorOrBeyondTheRange) {
    for (const char* formula :
         {"1/0", "a/(rate-0.5)", "sqrt(0-1)", "ln(0)", "tan(90)", "arcsin(2)", "10^400", "10^308*9",
          "10^308*9-1", "1-10^308*9*1", "1+2*10^308", "a*2-10^308*9", "0-10^308*9"}) {
        EXPECT_FALSE(computed(formula).has_value()) << formula;
    }
}

TEST(Compiler, KeepsTheType) {
    const Parameters all = parameters();
    const auto program = std::make_unique<Program>();
    for (const char* formula : {"int(a)", "+(int(a))", "(int(a))", "+(int a)"}) {
        ASSERT_TRUE(morandel::compile(formula, all, *program).done) << formula;
        EXPECT_EQ(program->type(), morandel::type_integer) << formula;
    }
    for (const char* formula :
         {"a", "-(int(a))", "int(a)+1", "sqrt(int(a))", "int(a) > 1", "int(a)*a"}) {
        ASSERT_TRUE(morandel::compile(formula, all, *program).done) << formula;
        EXPECT_EQ(program->type(), morandel::type_number) << formula;
    }
}

TEST(Compiler, TellsTheNameThatAloneIsMissing) {
    const Parameters all = parameters();
    const auto program = std::make_unique<Program>();
    const auto missing_name = [&](const char* formula) {
        const morandel::Compilation compilation = morandel::compile(formula, all, *program);
        EXPECT_FALSE(compilation.done && !compilation.missing_name.empty()) << formula;
        return compilation.missing_name;
    };
    for (const char* formula : {"v", "a+v", "v*w+a", "sqrt(v)+(a)", "-v", "v > 1", "(1+v)^2"}) {
        EXPECT_EQ(missing_name(formula), "v") << formula;
    }
    for (const char* formula : {"a", "", "v+", "(v", "v)", "strlen(v)", "v like \"x\"", "v,1", "v!",
                                "mod(v, 2)", "v+\"x\"", "v v", "int(v)^2", "pi"}) {
        EXPECT_EQ(missing_name(formula), "") << formula;
    }
}

}  // namespace
