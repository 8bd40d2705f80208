// The evaluator's public calls, beyond what a case file can say.

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include <morandel.h>

#include "engine/evaluator.h"

namespace {

// What the checker and other heirs work with.
class Opened : public CExpress {
  public:
    void serror(int n) { evaluator().faults().serror(n); }
};

void set_number(CExpress& e, int index, const std::string& name, double value) {
    MYPARA para{name, value, ""};
    ASSERT_EQ(e.SetPara(&para, index, false), 1);
}

void set_text(CExpress& e, int index, const std::string& name, const std::string& value) {
    MYPARA para{name, 0.0, value};
    ASSERT_EQ(e.SetPara(&para, index, true), 1);
}

double value_of(CExpress& e, const char* formula) {
    EXPECT_EQ(e.SetExpression(formula), 1) << formula;
    EXPECT_EQ(e.CalcExpression(), 1) << formula;
    return e.GetResult();
}

TEST(Express, ANewOneIsEmptyAndWell) {
    CExpress e;
    EXPECT_EQ(e.GetStatu(), 1);
    EXPECT_EQ(e.GetResult(), 0.0);
    EXPECT_EQ(e.GetResultType(), 0);
    EXPECT_EQ(e.GetExpressionStatus(), 0);
    EXPECT_EQ(e.GetErrorNumber(), -1);
    EXPECT_EQ(e.GetVariableNum(), 0);
    EXPECT_EQ(e.GetVariableList(), nullptr);
    EXPECT_EQ(e.m_ErrorMessage, "");
    EXPECT_EQ(e.m_StrResult, "");
    EXPECT_EQ(e.VerifyExpression(), 0);
    EXPECT_EQ(e.GetStatu(), 1);
    EXPECT_EQ(e.CalcExpression(), 0);
    EXPECT_EQ(e.GetErrorNumber(), 2);
}

TEST(Express, IsNeitherCopiedNorMoved) {
    static_assert(!std::is_copy_constructible_v<CExpress>);
    static_assert(!std::is_move_constructible_v<CExpress>);
    static_assert(!std::is_copy_assignable_v<CExpress>);
    static_assert(!std::is_move_assignable_v<CExpress>);
}

TEST(Express, ANullFormulaHasAMessageOfItsOwn) {
    CExpress e;
    EXPECT_EQ(e.SetExpression(nullptr), 0);
    EXPECT_EQ(e.m_ErrorMessage, "\xB9\xAB\xCA\xBD\xCE\xAA\xBF\xD5");
    EXPECT_EQ(e.GetStatu(), 1);
    EXPECT_EQ(e.GetErrorNumber(), -1);
}

TEST(Express, ANullFormulaLeavesTheStatusAndTheFormula) {
    CExpress e;
    EXPECT_EQ(e.SetExpression("(1"), 0);
    EXPECT_EQ(e.SetExpression(nullptr), 0);
    EXPECT_EQ(e.GetExpressionStatus(), 2);
    EXPECT_EQ(e.GetStatu(), 0);
    EXPECT_EQ(e.GetErrorNumber(), -1);
    ASSERT_EQ(e.SetExpression("x+2"), 1);
    EXPECT_EQ(e.SetExpression(nullptr), 0);
    EXPECT_EQ(e.GetStatu(), 1);
    EXPECT_EQ(e.GetExpressionStatus(), 0);
    EXPECT_EQ(e.GetVariableNum(), 1);
    e.SetNumberOfPara(1);
    set_number(e, 1, "x", 3.0);
    EXPECT_EQ(e.CalcExpression(), 1);
    EXPECT_EQ(e.GetResult(), 5.0);
    EXPECT_EQ(e.SetExpression(nullptr), 0);
    EXPECT_EQ(e.GetResult(), 5.0);
    EXPECT_EQ(e.CalcExpression(), 0) << "the formula is read to its end";
}

TEST(Express, AnEmptyFormulaIsRefusedThoughNoneIsThere) {
    CExpress e;
    EXPECT_EQ(e.SetExpression("(1"), 0);
    EXPECT_EQ(e.SetExpression(""), 0);
}

TEST(Express, AFormulaThatIsTooLongChangesNothing) {
    CExpress e;
    EXPECT_EQ(e.SetExpression(std::string(512, '1').c_str()), 1);
    ASSERT_EQ(e.SetExpression("1+"), 0);
    const std::string message = e.m_ErrorMessage;
    ASSERT_EQ(e.SetExpression("x+2"), 1);
    EXPECT_EQ(e.SetExpression(std::string(513, '1').c_str()), 0);
    EXPECT_EQ(e.m_ErrorMessage, "");
    EXPECT_EQ(e.GetStatu(), 1);
    EXPECT_EQ(e.GetVariableNum(), 1);
    e.SetNumberOfPara(1);
    set_number(e, 1, "x", 5);
    EXPECT_EQ(e.CalcExpression(), 1) << "the formula before is still loaded";
    EXPECT_EQ(e.GetResult(), 7.0);
    EXPECT_EQ(e.SetExpression(std::string(100'000, '(').c_str()), 0);
    EXPECT_NE(message, "");
}

TEST(Express, TakesFiftyParameters) {
    CExpress e;
    EXPECT_EQ(e.SetNumberOfPara(50), 1);
    for (int i = 1; i <= 50; ++i) set_number(e, i, "p" + std::to_string(i), i);
    EXPECT_EQ(value_of(e, "p1+p50"), 51.0);
    EXPECT_EQ(e.SetNumberOfPara(51), 0);
    MYPARA para{"a", 1.0, ""};
    EXPECT_EQ(e.SetPara(&para, 1, false), 0) << "there are no parameters now";
    EXPECT_EQ(e.SetExpression("p1"), 1);
    EXPECT_EQ(e.CalcExpression(), 0);
}

TEST(Express, SetParaMindsItsIndex) {
    CExpress e;
    MYPARA para{"a", 1.0, ""};
    EXPECT_EQ(e.SetPara(&para, 1, false), 0) << "none declared";
    e.SetNumberOfPara(2);
    EXPECT_EQ(e.SetPara(&para, 3, false), 0);
    EXPECT_EQ(e.SetPara(&para, 0, false), 0);
    EXPECT_EQ(e.SetPara(&para, -1, false), 0);
    EXPECT_EQ(e.SetPara(nullptr, 1, false), 0);
    EXPECT_EQ(e.SetPara(&para, 2, false), 1);
    EXPECT_EQ(value_of(e, "a"), 1.0);
    e.SetNumberOfPara(-3);
    EXPECT_EQ(e.SetPara(&para, -4, false), 0);
    EXPECT_EQ(e.SetPara(&para, 1, false), 0);
}

TEST(Express, SlotsKeepWhatTheyHold) {
    CExpress e;
    e.SetNumberOfPara(2);
    set_number(e, 1, "a", 1);
    set_number(e, 2, "b", 2);
    e.SetNumberOfPara(1);
    EXPECT_EQ(e.SetExpression("b"), 1);
    EXPECT_EQ(e.CalcExpression(), 0) << "b does not count now";
    e.SetNumberOfPara(2);
    EXPECT_EQ(value_of(e, "a+b"), 3.0);
    e.ClearOld();
    e.SetNumberOfPara(2);
    EXPECT_EQ(value_of(e, "a+b"), 3.0);
}

// Of many, which are looked for by another way than few.
TEST(Express, ASlotThatDoesNotCountIsNotFound) {
    CExpress e;
    e.SetNumberOfPara(10);
    for (int i = 1; i <= 10; ++i) set_number(e, i, "n" + std::to_string(i), i);
    EXPECT_EQ(value_of(e, "n1+n9+n10"), 20.0);
    e.SetNumberOfPara(8);
    for (const char* name : {"n9", "n10"}) {
        EXPECT_EQ(e.SetExpression(name), 1);
        EXPECT_EQ(e.GetVariableNum(), 1) << name;
        EXPECT_EQ(e.CalcExpression(), 0) << name;
    }
    EXPECT_EQ(value_of(e, "n1+n8"), 9.0);
}

// Names of every length that differ in one byte only.
TEST(Express, ASlotTakesAnotherName) {
    for (std::size_t size = 1; size <= 40; ++size) {
        const std::string name(size, 'x');
        for (std::size_t at = 0; at < size; ++at) {
            std::string other = name;
            other[at] = 'y';
            CExpress e;
            ASSERT_EQ(e.SetNumberOfPara(1), 1);
            set_number(e, 1, name, 2.0);
            ASSERT_EQ(value_of(e, name.c_str()), 2.0);
            set_number(e, 1, other, 3.0);
            ASSERT_EQ(value_of(e, other.c_str()), 3.0) << size << ' ' << at;
            ASSERT_EQ(e.SetExpression(name.c_str()), 1);
            ASSERT_EQ(e.CalcExpression(), 0) << size << ' ' << at;
            set_number(e, 1, other, 4.0);
            ASSERT_EQ(value_of(e, other.c_str()), 4.0) << size << ' ' << at;
        }
    }
}

TEST(Express, ASlotKeepsNumberAndTextApart) {
    CExpress e;
    e.SetNumberOfPara(1);
    set_text(e, 1, "a", "text");
    MYPARA number{"a", 7.0, "ignored"};
    e.SetPara(&number, 1, false);
    EXPECT_EQ(value_of(e, "a"), 7.0);
    MYPARA text{"a", 9.0, "new"};
    e.SetPara(&text, 1, true);
    EXPECT_EQ(value_of(e, "a"), 0.0);
    EXPECT_EQ(e.m_StrResult, "new");
}

TEST(Express, ValuesSetAfterLoadingCount) {
    CExpress e;
    e.SetNumberOfPara(1);
    set_number(e, 1, "a", 1);
    ASSERT_EQ(e.SetExpression("a+b"), 1);
    set_number(e, 1, "a", 10);
    e.SetNumberOfPara(2);
    set_number(e, 2, "b", 5);
    EXPECT_EQ(e.CalcExpression(), 1);
    EXPECT_EQ(e.GetResult(), 15.0);
    ASSERT_EQ(e.SetExpression("a+b"), 1);
    set_number(e, 1, "c", 1);
    EXPECT_EQ(e.CalcExpression(), 0) << "a has another name now";
}

TEST(Express, EvaluatingTwiceFindsTheEnd) {
    CExpress e;
    EXPECT_EQ(value_of(e, "1+2"), 3.0);
    EXPECT_EQ(e.CalcExpression(), 0);
    EXPECT_EQ(e.GetErrorNumber(), 2);
    EXPECT_EQ(e.GetResult(), 0.0);
    EXPECT_EQ(value_of(e, "1+2"), 3.0);
}

TEST(Express, VerifyingMovesTheReadingPosition) {
    CExpress e;
    ASSERT_EQ(e.SetExpression("1+2"), 1);
    EXPECT_EQ(e.VerifyExpression(), 1);
    EXPECT_EQ(e.CalcExpression(), 0);
    EXPECT_EQ(e.GetErrorNumber(), 2);
    EXPECT_EQ(e.VerifyExpression(), 0) << "nothing is left to check";
}

TEST(Express, ACheckThatStopsInTheMiddleIsGoneOnFrom) {
    CExpress e;
    const std::string long_name(251, 'a');
    e.SetNumberOfPara(1);
    set_number(e, 1, long_name, 1);
    ASSERT_EQ(e.SetExpression((long_name + " \"and\" 5").c_str()), 1);
    e.SetNumberOfPara(0);
    EXPECT_EQ(e.VerifyExpression(), 0);
    EXPECT_EQ(e.GetErrorNumber(), 38);
    EXPECT_EQ(e.CalcExpression(), 0);
    EXPECT_EQ(e.m_StrResult, "and") << "a literal is a text where an operand is due";
}

TEST(Express, ListsVariablesFromTheLastToTheFirst) {
    CExpress e;
    ASSERT_EQ(e.SetExpression("a+b like c"), 1);
    const VariableNode* node = e.GetVariableList();
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->name, "c");
    EXPECT_EQ(node->type, 2);
    node = node->next;
    EXPECT_EQ(node->name, "b");
    node = node->next;
    EXPECT_EQ(node->name, "a");
    EXPECT_EQ(node->next, nullptr);

    int type = 77;
    EXPECT_EQ(e.GetVariable(1, &type), "a");
    EXPECT_EQ(type, 1);
    EXPECT_EQ(e.GetVariable(3, nullptr), "c");
    type = 77;
    EXPECT_EQ(e.GetVariable(4, &type), "");
    EXPECT_EQ(e.GetVariable(0, &type), "");
    EXPECT_EQ(e.GetVariable(-1, &type), "");
    EXPECT_EQ(type, 77);
}

// Where a place tells no type, it is that of the variable found last, also by the load before.
TEST(Express, EachLoadDeducesTypesAnew) {
    CExpress e;
    for (const int wanted : {0, 2, 2}) {
        ASSERT_EQ(e.SetExpression("sin(1, v)+strlen(w)"), 1);
        int type = 77;
        EXPECT_EQ(e.GetVariable(1, &type), "v");
        EXPECT_EQ(type, wanted);
    }
}

TEST(Express, EachLoadListsTheVariableAnewThatAHostChanged) {
    CExpress e;
    for (int i = 0; i < 2; ++i) {
        ASSERT_EQ(e.SetExpression("a+1"), 1);
        VariableNode* node = e.GetVariableList();
        ASSERT_NE(node, nullptr);
        EXPECT_EQ(node->name, "a");
        EXPECT_EQ(node->type, 1);
        *node = {"b", 2};
    }
}

TEST(Express, ClearOldForgetsTheFormulaButNotTheVariables) {
    CExpress e;
    ASSERT_EQ(e.SetExpression("a+1/0"), 1);
    EXPECT_EQ(e.CalcExpression(), 0);
    e.ClearOld();
    EXPECT_EQ(e.GetStatu(), 1);
    EXPECT_EQ(e.m_ErrorMessage, "");
    EXPECT_EQ(e.GetErrorNumber(), -1);
    EXPECT_EQ(e.GetVariableNum(), 1);
    EXPECT_EQ(e.CalcExpression(), 0);
    EXPECT_EQ(e.GetErrorNumber(), 2);
}

TEST(Express, AnErrorWithoutEntryKeepsTheMessage) {
    Opened e;
    e.serror(34);
    const std::string message = e.m_ErrorMessage;
    e.m_Status = 1;
    for (const int n : {6, 7, 19, 22, 29, 80, 1000, -1, -2147483647}) {
        e.serror(n);
        EXPECT_EQ(e.GetStatu(), 0) << n;
        EXPECT_EQ(e.m_ErrorMessage, message) << n;
        EXPECT_EQ(e.GetErrorNumber(), 34) << n;
        e.m_Status = 1;
    }
}

TEST(Express, ConstructionEmptiesThePendingNumbersOfAll) {
    CExpress e;
    ASSERT_EQ(value_of(e, "strcase(\"a\", 5)"), 0.0);
    EXPECT_EQ(value_of(e, "if(1, 7)"), 5.0);
    ASSERT_EQ(value_of(e, "strcase(\"a\", 5)"), 0.0);
    const CExpress other;
    EXPECT_EQ(value_of(e, "if(1, 7)"), 1.0) << "7 alone is pending";
}

TEST(Express, EvaluatorsShareThePendingNumbersButNotTheTexts) {
    CExpress one;
    CExpress two;
    ASSERT_EQ(value_of(one, "strcase(\"a\", 5, \"t\")"), 0.0);
    EXPECT_EQ(value_of(two, "if(1, 7)"), 5.0);
    EXPECT_EQ(value_of(two, "strdelete(\"x\")"), 0.0);
    EXPECT_EQ(two.m_StrResult, "x");
    EXPECT_EQ(value_of(one, "strdelete(\"x\")"), 0.0);
    EXPECT_EQ(one.m_StrResult, "t");
}

TEST(Express, ItsOwnTextsMayComeBackIn) {
    CExpress e;
    ASSERT_EQ(value_of(e, "\"1+2\""), 0.0);
    EXPECT_EQ(value_of(e, e.m_StrResult.c_str()), 3.0);
    e.m_ErrorMessage = "4*5";
    EXPECT_EQ(value_of(e, e.m_ErrorMessage.c_str()), 20.0);
    e.SetNumberOfPara(1);
    MYPARA para{"a", 0.0, std::string("x\0y", 3)};
    e.SetPara(&para, 1, true);
    EXPECT_EQ(value_of(e, "strlen(a)"), 3.0);
}

TEST(Express, WhatIsPendingStaysThoughMuchHasComeAndGone) {
    CExpress e;
    ASSERT_EQ(e.SetNumberOfPara(1), 1);
    set_text(e, 1, "s", std::string(std::size_t{30} << 20, 'a'));
    value_of(e, "strlen(\"abc\", \"xyz\")");  // leaves its second text
    for (int i = 0; i < 4; ++i) value_of(e, "strlen(strdelete(\"b\", s))");
    value_of(e, "1");
    ASSERT_EQ(e.SetExpression("strdelete(\"y\")"), 1);
    ASSERT_EQ(e.CalcExpression(), 1);
    EXPECT_EQ(e.m_StrResult, "xz");
}

TEST(Express, TheOldestPendingGoAboveTheLimit) {
    CExpress e;
    // Each evaluation leaves 80 texts and 80 numbers.
    std::string formula = "(1";
    for (int i = 0; i < 80; ++i) formula += ",1,\"\"";
    formula += ")";
    for (int i = 0; i < 2000; ++i) value_of(e, formula.c_str());
    EXPECT_EQ(value_of(e, "strlen(strcat(\"zz\", \"abc\"))"), 5.0);
    // The empty entries of strcat's table lead to the first of what is left.
    EXPECT_EQ(value_of(e, "strlen(strcat(\"\"))"), 0.0);
    EXPECT_EQ(value_of(e, "if(1, 8)"), 1.0);
}

TEST(StringNode, SharesItsLinkWhenCopied) {
    CCStringNode last("b");
    CCStringNode first("a");
    first.m_pNext = &last;
    const CCStringNode copy = first;
    EXPECT_EQ(copy.m_strText, "a");
    EXPECT_EQ(copy.m_pNext, &last);
    CCStringNode assigned;
    EXPECT_EQ(assigned.m_strText, "");
    EXPECT_EQ(assigned.m_pNext, nullptr);
    assigned = first;
    EXPECT_EQ(assigned.m_pNext, &last);
    EXPECT_EQ(CCStringNode(nullptr).m_strText, "");
}

}  // namespace
