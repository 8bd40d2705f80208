// Records and lists, beyond what a case file can say: copies in every order, many records.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include <morandel.h>

namespace {

using List = CVariableExpressList;

std::string names_of(const List& list) {
    std::string names;
    for (CVariableExpress* r = list.GetHead(); r != nullptr; r = r->GetNext()) {
        std::string name;
        r->GetName(name);
        names += name;
    }
    return names;
}

List list_of(const std::string& names) {
    List list;
    for (const char name : names) list.Append(1, std::string(1, name).c_str(), name - 'a', "");
    return list;
}

TEST(Record, IsBuiltInThreeWays) {
    CVariableExpress plain;
    EXPECT_EQ(plain.GetType(), 1);
    EXPECT_EQ(plain.GetValue(), 0.0);
    EXPECT_EQ(plain.GetStrValue(), "");
    EXPECT_FALSE(plain.IsString());
    EXPECT_EQ(plain.GetNext(), nullptr);

    CVariableExpress number(0, "n", 2.5, "a+1");
    std::string text = "before";
    EXPECT_EQ(number.GetName(text), 1);
    EXPECT_EQ(text, "n");
    EXPECT_EQ(number.GetExp(text), 1);
    EXPECT_EQ(text, "a+1");
    EXPECT_EQ(number.GetValue(), 2.5);
    EXPECT_FALSE(number.IsString());

    CVariableExpress string(1, "s", "value", nullptr);
    EXPECT_TRUE(string.IsString());
    EXPECT_EQ(string.GetValue(), 0.0);
    EXPECT_EQ(string.GetStrValue(), "value");
    EXPECT_EQ(CVariableExpress(1, nullptr, nullptr, nullptr).GetStrValue(), "");
}

TEST(Record, SettersGiveOneButForTheType) {
    CVariableExpress r;
    EXPECT_EQ(r.SetType(7), 7);
    EXPECT_EQ(r.GetType(), 7);
    EXPECT_EQ(r.SetName("n"), 1);
    EXPECT_EQ(r.SetName(nullptr), 1);
    EXPECT_EQ(r.SetValue(3.5), 1);
    EXPECT_EQ(r.SetStrValue("text"), 1);
    EXPECT_EQ(r.SetExp("1+2"), 1);
    EXPECT_FALSE(r.IsString()) << "fixed at construction";
    EXPECT_EQ(r.GetStrValue(), "text");
    EXPECT_EQ(r.GetValue(), 3.5);
}

TEST(Record, ACopyPointsAtTheSameSuccessor) {
    List list = list_of("ab");
    {
        CVariableExpress copy(*list.GetHead());
        EXPECT_EQ(copy.GetNext(), list.GetHead()->GetNext());
        CVariableExpress assigned;
        assigned = copy;
        EXPECT_EQ(assigned.GetNext(), copy.GetNext());
        assigned = *&assigned;
    }
    EXPECT_EQ(names_of(list), "ab");
}

TEST(Record, CopiesAndAssignmentsTakeAllWithThem) {
    const CVariableExpress text(7, "s", "value", "a+1");
    CVariableExpress copy(text);
    CVariableExpress assigned(1, "n", 2.5, "");
    EXPECT_FALSE(assigned.IsString());
    assigned = text;
    for (CVariableExpress* r : {&copy, &assigned}) {
        EXPECT_TRUE(r->IsString());
        EXPECT_EQ(r->GetType(), 7);
        EXPECT_EQ(r->GetValue(), 0.0);
        EXPECT_EQ(r->GetStrValue(), "value");
        std::string out;
        r->GetName(out);
        EXPECT_EQ(out, "s");
        r->GetExp(out);
        EXPECT_EQ(out, "a+1");
    }
    assigned = CVariableExpress(1, "n", 2.5, "");
    EXPECT_FALSE(assigned.IsString());
    EXPECT_EQ(assigned.GetValue(), 2.5);
    EXPECT_EQ(assigned.GetStrValue(), "");

    List list = list_of("a");
    *list.GetHead() = text;
    EXPECT_TRUE(list.GetHead()->IsString()) << "in a list too";
    List other = list;
    EXPECT_TRUE(other.GetHead()->IsString());
}

TEST(Record, AssignedToInAListItKeepsItsPlace) {
    List list = list_of("abc");
    *list.FindByName("a") = *list.FindByName("c");
    EXPECT_EQ(names_of(list), "cbc");
    EXPECT_EQ(list.FindByName("c"), list.GetHead());
    *list.FindByName("b") = CVariableExpress(1, "x", 9.0, "");
    EXPECT_EQ(list.FindByNameAndGetValue("x"), 9.0);
    EXPECT_EQ(list.FindByName("a"), list.GetHead()) << "no such name any more";
}

TEST(Record, RenamedInAListItIsFoundByItsNewName) {
    List list = list_of("abc");
    list.FindByName("b")->SetName("z");
    EXPECT_EQ(list.FindByNameAndGetValue("z"), 1.0);
    EXPECT_EQ(list.FindByName("b"), list.GetHead());
    list.FindByName("c")->SetName("a");
    EXPECT_EQ(list.FindByNameAndGetValue("a"), 0.0) << "the first of the name";
    EXPECT_EQ(list.DeleteOneNodeByName("a"), 1);
    EXPECT_EQ(list.FindByNameAndGetValue("a"), 2.0);
    EXPECT_EQ(names_of(list), "za");
}

TEST(List, AnEmptyOneAnswers) {
    List list;
    EXPECT_EQ(list.FindByName("a"), nullptr);
    EXPECT_EQ(list.FindByName(nullptr), nullptr);
    EXPECT_EQ(list.FindByNameAndGetValue("a"), 0.0);
    EXPECT_EQ(list.FindByNameAndGetStrValue("a"), "");
    EXPECT_EQ(list.DeleteOneNodeByName(nullptr), 0);
    EXPECT_EQ(list.Cal(), 1);
    EXPECT_EQ(list.m_strError, "");
    EXPECT_EQ(list.m_nResultType, 0);
}

TEST(List, GetExpressionErrorIsInert) {
    List list;
    int a = 5;
    int b = 6;
    EXPECT_EQ(list.GetExpressionError(&a, &b), 0);
    EXPECT_EQ(list.GetExpressionError(nullptr, nullptr), 0);
    EXPECT_EQ(a, 5);
    EXPECT_EQ(b, 6);
}

// As any new evaluator does.
TEST(List, CallsThatMakeAnEvaluatorEmptyThePendingNumbers) {
    List list = list_of("a");
    list.Append(0, "b", 0.0, "a+1");
    List empty;
    CExpress e;
    const auto leave_a_number = [&e] {
        e.SetExpression("strcase(\"x\", 5)");
        e.CalcExpression();
    };
    const auto is_one_pending = [&e] {
        e.SetExpression("left(\"abcd\", 2)");  // takes one, and fails unless there is another
        const bool found = e.CalcExpression() == 1;
        const CExpress nothing_pending;
        return found;
    };
    leave_a_number();
    EXPECT_TRUE(is_one_pending());
    EXPECT_FALSE(is_one_pending());
    leave_a_number();
    list.GetExpressionError(nullptr, nullptr);
    EXPECT_FALSE(is_one_pending());
    leave_a_number();
    list.Cal();
    EXPECT_FALSE(is_one_pending());
    leave_a_number();
    empty.Cal();
    EXPECT_FALSE(is_one_pending());
    leave_a_number();
    const List copy = list;
    EXPECT_TRUE(is_one_pending()) << "a copy makes no evaluator";
}

TEST(List, ACopySharesTheRecords) {
    List original = list_of("abc");
    original.m_strError = "error";
    original.m_nResultType = 2;
    List copy = original;
    EXPECT_EQ(copy.m_strError, "error");
    EXPECT_EQ(copy.m_nResultType, 2);
    EXPECT_EQ(copy.GetHead(), original.GetHead());
    copy.FindByName("b")->SetValue(42.0);
    EXPECT_EQ(original.FindByNameAndGetValue("b"), 42.0);
    original.Append(1, "d", 4.0, "");
    EXPECT_EQ(names_of(copy), "abcd");
    copy.DeleteOneNodeByName("b");
    EXPECT_EQ(names_of(original), "acd");
    original.Free();
    EXPECT_EQ(names_of(original), "");
    EXPECT_EQ(names_of(copy), "acd");
    original.Append(1, "x", 1.0, "");
    EXPECT_EQ(names_of(copy), "acd");
}

TEST(List, CopiesOfAnEmptyListShareNothing) {
    List original;
    List copy = original;
    copy.Append(1, "a", 1.0, "");
    EXPECT_EQ(names_of(original), "");
    original = copy;
    EXPECT_EQ(names_of(original), "a");
    original = *&original;
    EXPECT_EQ(names_of(original), "a");
}

TEST(List, CopiesLiveAndDieInAnyOrder) {
    std::mt19937 random(3);
    for (int round = 0; round < 2000; ++round) {
        std::vector<List> lists(3);
        for (int step = 0; step < 30; ++step) {
            const auto pick = [&]() -> List& { return lists[random() % lists.size()]; };
            const std::string name(1, static_cast<char>('a' + random() % 4));
            switch (random() % 9) {
                case 0:
                    lists.push_back(pick());
                    break;
                case 1:
                    if (lists.size() > 1)
                        lists.erase(lists.begin() + static_cast<long>(random() % lists.size()));
                    break;
                case 2:
                    pick() = pick();
                    break;
                case 3:
                    pick().Free();
                    break;
                case 4:
                    pick().DeleteOneNodeByName(name.c_str());
                    break;
                case 5:
                    pick().Append(0, name.c_str(), 0.0, "a+1");
                    break;
                case 6:
                    if (CVariableExpress* record = pick().FindByName(name.c_str()))
                        record->SetName("b");
                    break;
                case 7:
                    (void)pick().Cal();
                    break;
                default:
                    pick().Append(1, name.c_str(), 1.0, "");
                    break;
            }
            (void)names_of(lists.front());
        }
    }
}

TEST(List, CanBeFilledAgainOnceFreed) {
    List list;
    for (const int count : {3, 1000, 100, 0, 60, 61, 1}) {
        for (int i = 0; i < count; ++i) {
            list.Append(0, ("v" + std::to_string(i)).c_str(), 0.0, std::to_string(i).c_str());
        }
        list.DeleteOneNodeByName("v1");
        list.Append(1, "v1", 7.0, "");
        EXPECT_EQ(list.Cal(), 1);
        for (int i = 0; i < count; ++i) {
            const double wanted = i == 1 ? 7.0 : i;
            ASSERT_EQ(list.FindByNameAndGetValue(("v" + std::to_string(i)).c_str()), wanted);
        }
        list.Free();
        ASSERT_EQ(list.GetHead(), nullptr);
        ASSERT_EQ(list.FindByName("v1"), nullptr);
        List copy = list;
        copy.Append(1, "of the copy", 1.0, "");
        ASSERT_EQ(list.GetHead(), nullptr) << "empty lists share nothing";
    }
}

TEST(List, AHundredThousandRecordsAreNoTrouble) {
    List list;
    for (int i = 0; i < 100'000; ++i) list.Append(1, ("v" + std::to_string(i)).c_str(), i, "");
    for (int i = 0; i < 100'000; ++i) {
        ASSERT_EQ(list.FindByNameAndGetValue(("v" + std::to_string(i)).c_str()), i);
    }
    EXPECT_EQ(list.Cal(), 1);
    for (int i = 0; i < 100'000; i += 2)
        list.DeleteOneNodeByName(("v" + std::to_string(i)).c_str());
    EXPECT_EQ(list.FindByNameAndGetValue("v99999"), 99'999.0);
    EXPECT_EQ(list.FindByNameAndGetValue("v99998"), 1.0) << "gone, so the head";
}

TEST(List, TheFiftyFirstIsNoParameter) {
    List list;
    for (int i = 1; i <= 50; ++i) list.Append(1, ("v" + std::to_string(i)).c_str(), i, "");
    list.Append(0, "sum", 0.0, "v1+v50");
    EXPECT_EQ(list.Cal(), 1);
    EXPECT_EQ(list.FindByNameAndGetValue("sum"), 51.0);
    list.Append(0, "after", 0.0, "sum");
    EXPECT_EQ(list.Cal(), 0) << "with sum as the 51st, none are left";
    list.Append(0, "constant", 0.0, "1+1");
    EXPECT_EQ(list.Cal(), 0);
}

TEST(List, AWorstOrderOfFiftySettles) {
    List list;
    list.Append(1, "v0", 1.0, "");
    for (int i = 49; i >= 1; --i) {
        list.Append(0, ("v" + std::to_string(i)).c_str(), 0.0,
                    ("v" + std::to_string(i - 1) + "+1").c_str());
    }
    EXPECT_EQ(list.Cal(), 1);
    EXPECT_EQ(list.FindByNameAndGetValue("v49"), 50.0);
}

TEST(List, ManyThatNeverSettleEndAtOnce) {
    List list;
    list.Append(1, "a", 1.0, "");
    for (int i = 0; i < 20'000; ++i)
        list.Append(0, ("v" + std::to_string(i)).c_str(), 0.0, i == 7 ? "1/0" : "nobody");
    EXPECT_EQ(list.Cal(), 0);
    EXPECT_NE(list.m_strError, "");
}

TEST(List, AnyNameAndFormulaIsStored) {
    List list;
    list.Append(1, "", 1.0, "");
    list.Append(0, nullptr, 2.0, nullptr);
    list.AppendString(1, std::string(100'000, 'n').c_str(), std::string(100'000, 's').c_str(), "");
    EXPECT_EQ(names_of(list).size(), 100'000U);
    EXPECT_EQ(list.Cal(), 1) << "the second empty name is the first record again";
    list.Append(0, "b", 0.0, std::string(600, '1').c_str());
    EXPECT_EQ(list.Cal(), 0);
}

}  // namespace
