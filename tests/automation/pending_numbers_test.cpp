// What the object's calls do to the numbers that formulas leave for one another: here the object is
// part of the program, so they are in reach.

#include <windows.h>

#include <gtest/gtest.h>

#include "automation/com_express.h"
#include "automation/pointer.h"
#include "engine/pending.h"

namespace {

using morandel::g_NumArray;

class PendingNumbers : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(morandel::automation::CComExpress::create(nullptr, IID_IComExpress,
                                                            m_object.fill_untyped()),
                  S_OK);
        leave_one();
    }
    static void leave_one() {
        g_NumArray().clear();
        g_NumArray().push(7.0);
    }

    morandel::automation::Pointer<IComExpress> m_object;
};

// Parameters are no constants in the interface, though nothing writes to them.
char* bytes(const char* text) { return const_cast<char*>(text); }

TEST_F(PendingNumbers, AreEmptiedByExpressionCheck) {
    for (const char* formula : {"1+2", "sin(\"a\")", "1+", ""}) {
        leave_one();
        EXPECT_EQ(m_object->ExpressionCheck(bytes(formula), nullptr, nullptr), S_OK);
        EXPECT_TRUE(g_NumArray().empty()) << formula;
    }
}

TEST_F(PendingNumbers, AreEmptiedByACalculation) {
    double value = 0.0;
    m_object->SetValue(0, bytes("a"), 0.0, bytes("1+2"));
    EXPECT_EQ(m_object->GetValue(bytes("a"), &value), S_OK);
    EXPECT_EQ(value, 3.0);
    EXPECT_TRUE(g_NumArray().empty());
}

TEST_F(PendingNumbers, StayWhereNothingIsComputed) {
    int accepted = 0;
    EXPECT_EQ(m_object->ValidateExpression(bytes("1+2"), &accepted), S_OK);
    EXPECT_EQ(accepted, 1);
    EXPECT_EQ(m_object->SetValue(1, bytes("a"), 5.0, bytes("")), S_OK);
    EXPECT_EQ(m_object->Clear(), S_OK);
    ASSERT_EQ(g_NumArray().size(), 1U);
    EXPECT_EQ(g_NumArray().from_top(0), 7.0);
}

}  // namespace
