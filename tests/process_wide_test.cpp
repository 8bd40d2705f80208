// Built with MORANDEL_PROCESS_WIDE_STATE, pending numbers are handed from thread to thread.

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <optional>
#include <thread>
#include <utility>

#include "engine/turn.h"
#include "tests/pending_thread.h"

namespace {

TEST(ProcessWide, AThreadFindsWhatAnotherOneLeft) {
    EXPECT_EQ(morandel::tests::found_by_another_thread(), 5.0);
}

TEST(ProcessWide, ANewEvaluatorOfAnyThreadForgetsIt) {
    EXPECT_EQ(morandel::tests::found_after_an_evaluator_of_another_thread(), 1.0);
}

TEST(ProcessWide, ThreadsTakeTurns) {
    std::atomic<bool> is_its_turn = false;
    std::optional<morandel::Turn> turn(std::in_place);
    std::thread other([&] {
        const morandel::Turn its;
        is_its_turn = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_FALSE(is_its_turn);
    turn.reset();
    other.join();
    EXPECT_TRUE(is_its_turn);
}

}  // namespace
