// Threads have pending numbers of their own, and evaluate, check and compute lists side by side.
// Runs under the thread sanitizer too.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <morandel.h>
#include <morandel/formula.hpp>

#include "engine/turn.h"
#include "tests/pending_thread.h"

namespace {

// Numbers that calls leave for one another, a list and a check: what one thread does is what it
// would do alone.
std::string work(int number) {
    std::string log;
    CExpress e;
    MYPARA a{"a", static_cast<double>(number), "text of " + std::to_string(number)};
    e.SetNumberOfPara(2);
    for (int round = 0; round < 300; ++round) {
        a.name = "a";
        e.SetPara(&a, 1, false);
        a.name = "s";
        e.SetPara(&a, 2, true);
        for (const char* formula :
             {"a*2+1", "mod(a, 7)+preci(a/3, 2)", "strsub(s, 2, 4)", "strlen(strcat(s, s, s))",
              "left(s, 3)", "strfind(\"o\", s, 1, a)", "if(a > 2, a, 2)", "strcase(s, 1, 2, 3)"}) {
            e.SetExpression(formula);
            e.CalcExpression();
            log += std::to_string(e.GetResult()) + e.m_StrResult + e.m_ErrorMessage + ';';
        }
        CVariableExpressList list;
        list.Append(CVariableExpress::computed, "y", 0.0, "x*2+a");
        list.Append(CVariableExpress::given, "x", number + round, "");
        list.Append(CVariableExpress::computed, "a", 0.0, "preci(x, 1)");
        list.Cal();
        log += std::to_string(list.FindByNameAndGetValue("y"));
        CExpressionCheck check;
        log += check.CheckExpression("sqrt(\"a\")+strlen(1)") ? '!' : '.';
    }
    return log;
}

TEST(Threads, WorkSideBySideAsEachWouldAlone) {
    constexpr int count = 4;
    std::vector<std::string> alone(count);
    for (int i = 0; i < count; ++i) {
        std::thread([&, i] { alone[static_cast<std::size_t>(i)] = work(i); }).join();
    }
    std::vector<std::string> together(count);
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i) {
        threads.emplace_back([&, i] { together[static_cast<std::size_t>(i)] = work(i); });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(together, alone);
    EXPECT_NE(alone[0], alone[1]);
}

// One formula for all of them: numbers, texts that convert, kinds it was not made ready for,
// failures and columns.
std::string compute(const morandel::Formula& numbers, const morandel::Formula& texts, int number) {
    std::string log;
    for (int round = 0; round < 200; ++round) {
        const double x = number + round / 7.0;
        log += std::to_string(numbers.compute_numbers(&x, 1)) + ' ';
        log += std::to_string(numbers("text").number()) + ' ';
        log += texts("苹果" + std::to_string(number), x).text() + ' ';
        std::vector<double> results;
        for (const unsigned char status : numbers.columns({std::vector<double>{x, 2.0}}, results)) {
            log += std::to_string(status);
        }
        log += std::to_string(results[0]);
        try {
            log += texts("😀", x).text();
        } catch (const morandel::Error& error) {
            log += error.message();
        }
        if (round % 20 == 0) log += std::to_string(texts.warnings().size());
    }
    return log;
}

TEST(Threads, ShareAFormula) {
    const morandel::Formula numbers("mod(x, 7)+1/(x-2)", {"x"});
    const morandel::Formula texts("strcat(strsub(name, 1, 4), \"·\", r2s(x, 3));", {"name", "x"});
    constexpr int count = 4;
    std::vector<std::string> alone(count);
    for (int i = 0; i < count; ++i) {
        alone[static_cast<std::size_t>(i)] = compute(numbers, texts, i + 3);
    }
    std::vector<std::string> together(count);
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i) {
        threads.emplace_back([&, i, copy = numbers] {
            together[static_cast<std::size_t>(i)] = compute(copy, texts, i + 3);
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(together, alone);
}

TEST(Threads, DoNotFindWhatOthersLeft) {
    EXPECT_EQ(morandel::tests::found_by_another_thread(), 1.0);
}

TEST(Threads, ANewEvaluatorForgetsNothingOfOthers) {
    EXPECT_EQ(morandel::tests::found_after_an_evaluator_of_another_thread(), 5.0);
}

// Whatever another thread did with them before.
TEST(Threads, ListsThatShareRecordsLetGoOfThemInAnyThread) {
    for (int pause = 0; pause < 2000; pause += 50) {
        CVariableExpressList list;
        list.Append(CVariableExpress::given, "a", 1.0, "");
        auto copy = std::make_unique<CVariableExpressList>(list);
        std::thread other([copy = std::move(copy)]() mutable {
            EXPECT_EQ(copy->FindByNameAndGetValue("a"), 1.0);
            copy.reset();
        });
        for (int i = 0; i < pause; ++i) std::this_thread::yield();
        list.Free();
        other.join();
        EXPECT_EQ(list.GetHead(), nullptr);
    }
}

// Who holds two turns waits for himself, where one waits at all.
TEST(Threads, WaitForNobodysTurn) {
    const morandel::Turn one;
    const morandel::Turn other;
}

}  // namespace
