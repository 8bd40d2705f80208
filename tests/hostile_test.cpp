// Whatever a formula, a name or a value holds, every call returns, in bounded time and stack, and
// the object answers afterwards.

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <morandel.h>
#include "tests/small_stack.h"

namespace {

void expect_usable(CExpress& e) {
    ASSERT_EQ(e.SetExpression("1+2*3"), 1);
    ASSERT_EQ(e.CalcExpression(), 1);
    ASSERT_EQ(e.GetResult(), 7.0);
}

void play(CExpress& e, const std::string& formula) {
    if (e.SetExpression(formula.c_str()) == 1) e.CalcExpression();
    e.CalcExpression();
    e.VerifyExpression();
    for (int i = 0; i <= e.GetVariableNum() + 1; ++i) {
        int type = 0;
        (void)e.GetVariable(i, &type);
    }
}

std::vector<std::string> pieces() {
    std::vector<std::string> all = {
        "1",     "2.5",  "0",   "-1",       "1e9",  "\"\"", "\"a\"", "\"abcabc\"", "\"",
        "x",     "s",    "n",   "\xD6\xD0", "\xD6", "(",    ")",     ",",          ",",
        "+",     "-",    "*",   "/",        "^",    "!",    "%",     " like ",     " equal ",
        " and ", " or ", " < ", " > ",      " = ",  " <= ", " >= ",  " <> ",       " "};
    for (const morandel::Function& f : morandel::functions())
        all.emplace_back(std::string(f.name) + "(");
    return all;
}

TEST(Hostile, RandomBytes) {
    std::mt19937 random(1);
    CExpress e;
    for (int i = 0; i < 20'000; ++i) {
        std::string formula(random() % 530, ' ');
        for (char& c : formula)
            c = static_cast<char>(i % 2 == 0 ? random() % 255 + 1 : random() % 96 + 32);
        play(e, formula);
    }
    expect_usable(e);
}

TEST(Hostile, RandomPieces) {
    std::mt19937 random(2);
    const std::vector<std::string> all = pieces();
    CExpress e;
    e.SetNumberOfPara(4);
    for (int i = 0; i < 100'000; ++i) {
        if (i % 10 == 0) {
            MYPARA text{"s", 0.0, std::string(random() % 40, static_cast<char>(random() % 256))};
            e.SetPara(&text, 1, true);
            const std::uint64_t bits = std::uint64_t{random()} << 32 | random();
            MYPARA number{"n", std::bit_cast<double>(bits), ""};
            e.SetPara(&number, 2, false);
        }
        std::string formula;
        for (std::size_t left = random() % 20 + 1; left > 0; --left)
            formula += all[random() % all.size()];
        play(e, formula);
    }
    expect_usable(e);
}

TEST(Hostile, EveryFunctionWithEveryMixOfArguments) {
    const std::vector<std::string> values = {"1",   "0",   "-1",  "\"a\"", "\"\"",
                                             "big", "nan", "inf", "x"};
    CExpress e;
    e.SetNumberOfPara(3);
    MYPARA big{"big", 1e300, ""};
    MYPARA nan{"nan", std::numeric_limits<double>::quiet_NaN(), ""};
    MYPARA inf{"inf", std::numeric_limits<double>::infinity(), ""};
    e.SetPara(&big, 1, false);
    e.SetPara(&nan, 2, false);
    e.SetPara(&inf, 3, false);
    for (const morandel::Function& f : morandel::functions()) {
        std::function<void(const std::string&, int)> extend = [&](const std::string& list,
                                                                  int left) {
            play(e, std::string(f.name) + "(" + list + ")");
            if (left == 0) return;
            for (const std::string& v : values) extend(list.empty() ? v : list + "," + v, left - 1);
        };
        extend("", f.kinds.size() > 4 ? 3 : 4);
    }
    expect_usable(e);
}

TEST(Hostile, LongNamesAndTexts) {
    CExpress e;
    e.SetNumberOfPara(2);
    MYPARA para{std::string(100'000, 'n'), 1.0, std::string(1'000'000, '"')};
    EXPECT_EQ(e.SetPara(&para, 1, true), 1);
    MYPARA empty{"", 1.0, ""};
    EXPECT_EQ(e.SetPara(&empty, 2, false), 1);
    for (const std::string& formula :
         {std::string(100'000, '\xFF'), std::string(512, '"'), std::string(512, '\xFF'),
          std::string(511, '('), std::string()}) {
        play(e, formula);
    }
    para.name = "s";
    e.SetPara(&para, 1, true);
    ASSERT_EQ(e.SetExpression("strlen(strcat(s, s))"), 1);
    EXPECT_EQ(e.CalcExpression(), 1);
    EXPECT_EQ(e.GetResult(), 2'000'000.0);
    expect_usable(e);
}

TEST(Hostile, TextsOver64MebibytesAreRefused) {
    CExpress e;
    e.SetNumberOfPara(1);
    MYPARA para{"s", 0.0, std::string(std::size_t{33} << 20, 'a')};
    e.SetPara(&para, 1, true);
    for (const char* formula : {"strcat(s, s)", "strinsert(s, s, 0)", "strreplace(s, \"a\", s)",
                                "strreplace(\"aa\", \"a\", s)"}) {
        ASSERT_EQ(e.SetExpression(formula), 1);
        EXPECT_EQ(e.CalcExpression(), 0) << formula;
        EXPECT_EQ(e.GetErrorNumber(), 55) << formula;
    }
    para.strValue.resize(std::size_t{32} << 20);
    e.SetPara(&para, 1, true);
    for (const std::string formula :
         {"strcat(s, s)", "strinsert(s, s, 0)", "strreplace(\"aa\", \"a\", s)",
          "strreplace(s, \"x\", strcat(\"x\", s))"}) {
        ASSERT_EQ(e.SetExpression(("strlen(" + formula + ")").c_str()), 1);
        EXPECT_EQ(e.CalcExpression(), 1) << formula << ", 64 MiB exactly";
        EXPECT_EQ(e.GetResult(), static_cast<double>(std::size_t{64} << 20)) << formula;
    }
    // One occurrence, and a byte too much beside it.
    ASSERT_EQ(e.SetExpression("strreplace(s, \"x\", strcat(\"xy\", s))"), 1);
    EXPECT_EQ(e.CalcExpression(), 0);
    EXPECT_EQ(e.GetErrorNumber(), 55);
    para.strValue.resize((std::size_t{64} << 20) + 1, 'b');
    e.SetPara(&para, 1, true);
    ASSERT_EQ(e.SetExpression("strdelete(\"b\", s)"), 1);
    e.CalcExpression();
    for (const char* formula : {"strreplace(\"x\", \"c\", s, 99999999)", "strinsert(s, \"\", 0)"}) {
        ASSERT_EQ(e.SetExpression(formula), 1);
        EXPECT_EQ(e.CalcExpression(), 0) << formula;
        EXPECT_EQ(e.GetErrorNumber(), 55) << formula;
    }
    expect_usable(e);
}

std::string repeated(const std::string& text, std::size_t size) {
    std::string all;
    while (all.size() + text.size() <= size) all += text;
    return all;
}

// The deepest formulas of 512 bytes.
std::vector<std::string> deep_formulas() {
    std::vector<std::string> formulas;
    for (const std::string open :
         {"(", "-(", "or(", "\"ln\"(", "1^(", "1+(", "1*(", "1 <(", "1,("}) {
        std::string formula = repeated(open, 510 * open.size() / (open.size() + 1));
        formula += "1";
        for (const char c : std::string(formula)) {
            if (c == '(') formula += ')';
        }
        formulas.push_back(formula);
    }
    formulas.push_back(repeated("1^", 511) + "1");
    formulas.push_back(repeated("1^-", 511) + "1");
    formulas.push_back(repeated("1 = ", 508) + "1");
    formulas.push_back(repeated("1 > ", 508) + "1");
    formulas.push_back("1" + repeated("!", 511));
    formulas.push_back(repeated("!", 512));
    formulas.push_back("1" + repeated("!-", 511));
    return formulas;
}

TEST(Hostile, TheDeepestFormulaNeedsASmallStack) {
    const auto run = [](void*) -> void* {
        CExpress e;
        for (const std::string& formula : deep_formulas()) play(e, formula);
        expect_usable(e);
        return nullptr;
    };
    for (const std::string& formula : deep_formulas()) {
        CExpress e;
        ASSERT_LE(formula.size(), 512U);
        ASSERT_EQ(e.SetExpression(formula.c_str()), 1) << formula;
    }
    morandel::tests::run_on_small_stack(run);
}

}  // namespace
