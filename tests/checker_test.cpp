// The checker's object, beyond what a case file can say.

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <stdexcept>
#include <string>

#include "checker/rules.h"
#include "engine/tokenizer.h"
#include "morandel.h"
#include "tests/small_stack.h"

namespace {

TEST(Checker, ANewOneIsEmpty) {
    CExpressionCheck check;
    EXPECT_EQ(check.GetLocalNumber(), 0);
    EXPECT_EQ(check.GetCommaNum(), 0);
    EXPECT_EQ(check.m_step, -1);
    EXPECT_EQ(check.m_depth, 0);
    EXPECT_EQ(check.CountCommaCheck(), 0);
    EXPECT_TRUE(check.m_errors.empty());
    EXPECT_EQ(check.m_current.nType, 0);
    EXPECT_THROW((void)check.GetExpressionError(0), std::invalid_argument);
    EXPECT_FALSE(check.CheckExpression(nullptr));
    EXPECT_FALSE(check.m_ErrorMessage.empty());
}

TEST(Checker, CountsArguments) {
    CExpressionCheck check;
    check.CheckExpression("sin(1, 2, 3)");
    EXPECT_EQ(check.GetLocalNumber(), 2);
    EXPECT_EQ(check.GetCommaNum(), 2) << "sin forgets none";
    check.CheckExpression("mod(1, 2)");
    EXPECT_EQ(check.GetLocalNumber(), 1);
    EXPECT_EQ(check.GetCommaNum(), 0) << "mod forgets its own";
    check.CheckExpression("if(1, 2, 3)+if(4, 5, 6)");
    EXPECT_EQ(check.m_depth, 2);
    EXPECT_EQ(check.GetCommaNum(), check.GetLocalNumber());
    EXPECT_EQ(check.GetLocalNumber(), 2);
}

TEST(Checker, TheCallsForTheLevelsAreSafeByThemselves) {
    CExpressionCheck check;
    for (int i = 0; i < 100; ++i) check.InitStep();
    EXPECT_EQ(check.m_step, -101);
    check.InitTempHolde(nullptr, 5);
    EXPECT_TRUE(check.CheckExpression("sqrt(\"a\")"));
    check.CheckExpression("if(1, 2, 3)");
    check.SetExpression("1");
    EXPECT_EQ(check.CountCommaCheck(), 0) << "the step belongs to another formula";
    check.InitTempHolde(nullptr, 0);
    check.ClearOld();
    EXPECT_EQ(check.CountCommaCheck(), 0);
}

TEST(Checker, IsAnEvaluatorToo) {
    CExpressionCheck check;
    ASSERT_EQ(check.SetExpression("1+2"), 1);
    EXPECT_EQ(check.CalcExpression(), 1);
    EXPECT_EQ(check.GetResult(), 3.0);
}

TEST(Checker, AFaultOfItsOwnIsEmpty) {
    const CheckexpressionError fault;
    EXPECT_EQ(fault.nType, 0);
    EXPECT_EQ(fault.nPosition, 0);
    EXPECT_EQ(fault.nIndex, 0);
    EXPECT_EQ(fault.strName, "");
}

TEST(Checker, ResetEmptiesThreeThings) {
    CExpressionCheck check;
    check.CheckExpression("sin(\"a\", 1)");
    EXPECT_EQ(check.m_errors.size(), 1U);
    EXPECT_EQ(check.m_argKinds.size(), 1U);
    EXPECT_EQ(check.m_tokenCount, 5);
    EXPECT_EQ(check.GetExpressionError(0).strName, "sin");
    EXPECT_THROW((void)check.GetExpressionError(1), std::invalid_argument);
    EXPECT_THROW((void)check.GetExpressionError(-1), std::invalid_argument);
    check.Reset();
    EXPECT_TRUE(check.m_errors.empty());
    EXPECT_TRUE(check.m_argKinds.empty());
    EXPECT_EQ(check.m_tokenCount, 0);
}

// What they keep counts as an argument of the calls after them.
TEST(Checker, SomeFunctionsKeepTheirFurtherArguments) {
    const std::set<std::string_view> keeping = {
        "sin", "cos", "tan", "ctan", "sqrt", "arcsin", "arccos",   "arctan", "arcctan",
        "ln",  "log", "int", "deci", "not",  "strlen", "strtrims", "s2r"};
    for (const morandel::Function& function : morandel::functions()) {
        CExpressionCheck check;
        check.CheckExpression((std::string(function.name) + "(x, y, z)").c_str());
        EXPECT_EQ(check.m_argKinds.size(), keeping.contains(function.name) ? 2U : 0U)
            << function.name;
    }
}

TEST(Checker, HasARuleForEveryFunctionInTheOrderOfTheTable) {
    for (const morandel::Function& row : morandel::functions()) {
        const morandel::CheckRule* rule = morandel::rule_of_code(row.code);
        ASSERT_NE(rule, nullptr) << row.name;
        const bool wants_text = row.kinds[0] == 't';
        EXPECT_EQ(rule->first_kind == CExpressionCheck::kind_text, wants_text) << row.name;
    }
    EXPECT_EQ(morandel::rule_of_code('g'), nullptr);
    EXPECT_EQ(morandel::expected_kind("strcat", 9), 2);
    EXPECT_EQ(morandel::expected_kind("strsub", 5), -1);
    EXPECT_EQ(morandel::expected_kind("or", 2), 1);
    EXPECT_EQ(morandel::expected_kind("nothing", 1), -1);
}

TEST(Checker, ManyChecksOnOneObjectStayWithinItsArrays) {
    CExpressionCheck check;
    std::string formula = "if(1,2,3)";
    while (formula.size() < 490) formula += "+left(a,1)";
    for (int i = 0; i < 20'000; ++i) {
        if (i % 1000 == 0) check.Reset();
        check.CheckExpression(formula.c_str());
    }
    check.Reset();
    EXPECT_FALSE(check.CheckExpression("1+2"));
}

// Formulas that the evaluator and the checker must both read to their end.
TEST(Checker, RandomFormulasDoNotBreakIt) {
    std::mt19937 random(5);
    static const char* const pieces[] = {"1",     "\"a\"", "x",       "(",    ")",       ",",
                                         "+",     "-",     "*",       "^",    "!",       " like ",
                                         " and ", " or ",  " = ",     "sin(", "strcat(", "if(",
                                         "left(", "mod(",  "strsub(", "\"",   "\"if\"("};
    CExpressionCheck check;
    for (int i = 0; i < 200'000; ++i) {
        std::string formula;
        for (auto left = random() % 14 + 1; left > 0; --left)
            formula += pieces[random() % std::size(pieces)];
        check.CheckExpression(formula.c_str());
        (void)check.GetCommaNum();
        (void)check.GetLocalNumber();
        if (i % 16 == 0) check.Reset();
    }
    check.Reset();
    EXPECT_TRUE(check.CheckExpression("sqrt(\"a\")"));
    EXPECT_EQ(check.m_errors.size(), 1U);
}

TEST(Checker, TheDeepestFormulaNeedsASmallStack) {
    const auto run = [](void*) -> void* {
        CExpressionCheck check;
        for (const std::string open : {"(", "-(", "or(", "1^("}) {
            std::string formula;
            while (formula.size() + open.size() + 2 < 500 * open.size() / (open.size() + 1))
                formula += open;
            const std::size_t depth = formula.size() / open.size();
            formula += "1" + std::string(depth, ')');
            check.CheckExpression(formula.c_str());
        }
        std::string powers = "1";
        while (powers.size() < 510) powers += "^1";
        check.CheckExpression(powers.c_str());
        EXPECT_EQ(check.GetStatu(), 1);
        return nullptr;
    };
    morandel::tests::run_on_small_stack(run);
}

}  // namespace
