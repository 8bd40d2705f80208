// Built with MORANDEL_PROCESS_WIDE_STATE, pending numbers are handed from thread to thread.

#include <gtest/gtest.h>

#include "tests/pending_thread.h"

namespace {

TEST(ProcessWide, AThreadFindsWhatAnotherOneLeft) {
    EXPECT_EQ(morandel::tests::found_by_another_thread(), 5.0);
}

TEST(ProcessWide, ANewEvaluatorOfAnyThreadForgetsIt) {
    CExpress giving;
    CExpress taking;
    giving.SetExpression("strcase(\"x\", 5)");
    giving.CalcExpression();
    std::thread([] { CExpress newer; }).join();
    taking.SetExpression("if(1, 7)");
    taking.CalcExpression();
    EXPECT_EQ(taking.GetResult(), 1.0);
}

}  // namespace
