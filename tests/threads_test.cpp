// With pending numbers of their own, threads evaluate, check and compute lists side by side. Meant
// to run under the thread sanitizer.

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "morandel.h"

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

}  // namespace
