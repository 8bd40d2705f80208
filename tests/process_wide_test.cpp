// Built with MORANDEL_PROCESS_WIDE_STATE, pending numbers are handed from thread to thread.

#include <gtest/gtest.h>

#include "tests/pending_thread.h"

namespace {

TEST(ProcessWide, AThreadFindsWhatAnotherOneLeft) {
    EXPECT_EQ(morandel::tests::found_by_another_thread(), 5.0);
}

TEST(ProcessWide, ANewEvaluatorOfAnyThreadForgetsIt) {
    EXPECT_EQ(morandel::tests::found_after_an_evaluator_of_another_thread(), 1.0);
}

}  // namespace
