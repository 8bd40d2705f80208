// The checker's object, beyond what a case file can say.

#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <stdexcept>
#include <string>

#include <morandel.h>

#include "checker/checking.h"
#include "engine/levels.h"
#include "tests/pair.h"
#include "tests/random_formulas.h"
#include "tests/small_stack.h"

namespace {

using morandel::pairs::Checkers;
using morandel::tests::RandomFormulas;
using morandel::tests::setting;

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

// The levels by themselves, where the grammar check would have refused the formula.
TEST(Checker, TellsWhatIsMissing) {
    CExpressionCheck check;
    morandel::Checking checking(check);
    const auto error_of = [&](const char* formula) {
        checking.m_tokens.cut(formula);
        checking.m_tokens.seek(0);
        morandel::Levels<morandel::Checking&, morandel::Checking&>(checking, checking).get_exp();
        return check.GetErrorNumber();
    };
    EXPECT_EQ(error_of(""), static_cast<int>(morandel::ErrorNumber::no_expression));
    EXPECT_EQ(error_of("(1"), static_cast<int>(morandel::ErrorNumber::unbalanced_parentheses));
    EXPECT_EQ(error_of("1+"), static_cast<int>(morandel::ErrorNumber::bad_expression));
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
    check.CheckExpression("mod(1, 2)");
    for (const int step : {1'000'000'000, -1'000'000'000}) {
        check.m_step = step;
        EXPECT_EQ(check.CountCommaCheck(), 0) << "there is no such step";
    }
}

TEST(Checker, IsAnEvaluatorToo) {
    CExpressionCheck check;
    ASSERT_EQ(check.SetExpression("1+2"), 1);
    EXPECT_EQ(check.CalcExpression(), 1);
    EXPECT_EQ(check.GetResult(), 3.0);
}

TEST(Checker, ANewFaultIsEmpty) {
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
    check.Reset();
    EXPECT_TRUE(check.m_errors.empty());
    EXPECT_TRUE(check.m_argKinds.empty());
    EXPECT_EQ(check.m_tokenCount, 0);
}

TEST(Checker, ThrowsForAFaultThatDoesNotExist) {
    CExpressionCheck check;
    check.CheckExpression("sin(\"a\", 1)");
    EXPECT_EQ(check.GetExpressionError(0).strName, "sin");
    EXPECT_THROW((void)check.GetExpressionError(1), std::invalid_argument);
    EXPECT_THROW((void)check.GetExpressionError(-1), std::invalid_argument);
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

TEST(Checker, TellsWhatKindAnOperandShouldHave) {
    EXPECT_EQ(morandel::expected_kind("strcat", 9), 2);
    EXPECT_EQ(morandel::expected_kind("strsub", 5), -1);
    EXPECT_EQ(morandel::expected_kind("or", 2), 1);
    EXPECT_EQ(morandel::expected_kind("nothing", 1), -1);
}

TEST(Checker, ManyChecksOnOneObjectLeaveItSound) {
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

// MORANDEL_RANDOM_CHECKS and MORANDEL_RANDOM_SEED set how many and which.
TEST(Checker, RecordsWhatTheModelDoes) {
    const auto count = setting("MORANDEL_RANDOM_CHECKS", 100'000);
    RandomFormulas random(static_cast<std::uint32_t>(setting("MORANDEL_RANDOM_SEED", 1)));
    std::optional<Checkers> pair;
    long faulty = 0;
    std::string trail;
    for (std::uint64_t i = 0; i < count; ++i) {
        if (i % 64 == 0) {
            pair.emplace();
            pair->set_number(1, "a", 2.5);
            pair->set_text(2, "s", "text");
            trail.clear();
        }
        switch (random.below(32)) {
            case 0:
                trail += "CountCommaCheck\n";
                pair->count_commas();
                break;
            case 1:
                trail += "InitStep\n";
                pair->init_step();
                break;
            case 2:
                trail += "InitTempHolde\n";
                pair->forget_arguments();
                break;
            case 3:
                trail += "CalcExpression\n";
                pair->calculate();
                break;
            case 4:
            case 5:
                trail += "Reset\n";
                pair->reset();
                break;
            default: {
                const std::string formula = random.formula();
                trail += "check " + formula + '\n';
                faulty += pair->check(formula) ? 1 : 0;
                break;
            }
        }
        ASSERT_EQ(pair->difference().text(), "") << trail;
    }
    EXPECT_GT(faulty, static_cast<long>(count / 12));
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
