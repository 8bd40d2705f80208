// The stack of further arguments.

#include "strfuncs/argument_stack.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace {

using Stack = morandel::ArgumentStack<int>;

Stack stack_of(int count) {
    Stack stack;
    for (int i = 1; i <= count; ++i) stack.push(i);
    return stack;
}

std::vector<int> content(const Stack& stack) {
    std::vector<int> all;
    for (std::size_t i = 0; i < stack.size(); ++i) all.push_back(stack[i]);
    return all;
}

TEST(ArgumentStack, PushesAndPopsAtTheTop) {
    Stack stack = stack_of(5);
    EXPECT_EQ(content(stack), (std::vector{1, 2, 3, 4, 5}));
    EXPECT_EQ(stack.from_top(0), 5);
    EXPECT_EQ(stack.from_top(4), 1);
    stack.pop(2);
    EXPECT_EQ(content(stack), (std::vector{1, 2, 3}));
    stack.push(6);
    EXPECT_EQ(content(stack), (std::vector{1, 2, 3, 6}));
    stack.pop(99);
    EXPECT_TRUE(stack.empty());
    stack.push(7);
    EXPECT_EQ(content(stack), (std::vector{7}));
    stack.clear();
    EXPECT_TRUE(stack.empty());
}

TEST(ArgumentStack, RemovesEverySecond) {
    for (int count = 1; count <= 7; ++count) {
        for (int index = 0; index < count; ++index) {
            Stack stack = stack_of(count);
            stack.remove_every_second(static_cast<std::size_t>(index));
            std::vector<int> wanted;
            for (int i = 0; i < count; ++i) {
                if (i < index || (i - index) % 2 == 1) wanted.push_back(i + 1);
            }
            EXPECT_EQ(content(stack), wanted) << count << " from " << index;
        }
    }
}

TEST(ArgumentStack, DropsTheOldestOverAndOver) {
    Stack stack;
    std::vector<int> wanted;
    for (int i = 0; i < 100; ++i) {
        stack.push(i);
        wanted.push_back(i);
        if (i % 3 != 0) continue;
        stack.drop_oldest(7);
        if (wanted.size() > 7) wanted.erase(wanted.begin(), wanted.end() - 7);
        ASSERT_EQ(content(stack), wanted) << i;
        if (i % 6 == 0) {
            stack.remove_every_second(1);
            std::erase_if(wanted, [&, place = 0](int) mutable { return ++place % 2 == 0; });
            ASSERT_EQ(content(stack), wanted) << i;
        }
    }
}

// Where the first one is in the middle of the room.
TEST(ArgumentStack, GrowsAfterTheOldestWereDropped) {
    Stack stack = stack_of(8);
    stack.drop_oldest(5);
    for (int i = 9; i <= 14; ++i) stack.push(i);
    EXPECT_EQ(content(stack), (std::vector{4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14}));
}

// Batches take it that nothing has changed where the count is the same.
TEST(ArgumentStack, EveryChangeCounts) {
    Stack stack;
    std::set<std::uint64_t> seen{stack.changes()};
    const auto changed = [&] { return seen.insert(stack.changes()).second; };
    stack.push(1);
    EXPECT_TRUE(changed());
    stack.pop(1);
    EXPECT_TRUE(changed());
    for (int i = 0; i < 6; ++i) {
        stack.push(i);
        EXPECT_TRUE(changed());
    }
    stack.remove_every_second(2);
    EXPECT_TRUE(changed());
    stack.drop_oldest(2);
    EXPECT_TRUE(changed());
    stack.drop_oldest(2);
    stack.pop(0);
    EXPECT_FALSE(changed()) << "nothing was done";
    stack.clear();
    EXPECT_TRUE(changed());
}

TEST(ArgumentStack, HandsOnWhatIsSpare) {
    Stack stack = stack_of(9);
    stack.drop_oldest(5);
    stack.pop(2);
    std::multiset<int> spare;
    stack.each_spare([&](int element) { spare.insert(element); });
    spare.erase(0);  // of slots that were never used
    EXPECT_EQ(content(stack), (std::vector{5, 6, 7}));
    EXPECT_EQ(spare, (std::multiset{1, 2, 3, 4, 8, 9}));
}

}  // namespace
