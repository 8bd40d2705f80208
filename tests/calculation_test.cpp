// The batch calculation against a model that does it the long way: a queue of names, every attempt
// made, on random lists with chains, cycles, duplicates, texts and faults.

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <deque>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "morandel.h"

namespace {

struct Entry {
    int type;
    std::string name;
    double value;
    std::string text;
    std::string formula;
    bool is_string;
};

class Model {
  public:
    std::vector<Entry> entries;
    std::string error;
    int result_type = 0;

    bool cal() {
        CExpress e;
        MYPARA para;
        std::deque<std::string> queue;
        const auto n = static_cast<long>(entries.size());
        const auto fill = [&para](const Entry& entry) {
            para.name = entry.name;
            if (entry.is_string) {
                para.strValue = entry.text;
            } else {
                para.value = entry.value;
            }
        };
        int slot = 0;
        for (const Entry& listed : entries) {
            const Entry& entry = first(listed.name);
            e.SetNumberOfPara(++slot);
            fill(entry);
            e.SetPara(&para, slot, entry.is_string);
            queue.push_back(listed.name);
        }
        int index = 1;
        for (long attempts = 0; !queue.empty();) {
            Entry& entry = first(queue.front());
            queue.pop_front();
            if (entry.type == 1) {
                e.SetNumberOfPara(index);
                fill(entry);
                e.SetPara(&para, index++, entry.is_string);
            } else {
                if (e.SetExpression(entry.formula.c_str()) == 0) return fail(e);
                if (e.CalcExpression() == 0) {
                    queue.push_back(entry.name);
                } else {
                    result_type = e.GetResultType();
                    if (result_type == 2) {
                        para.strValue = entry.text = e.m_StrResult;
                    } else {
                        para.value = entry.value = e.GetResult();
                    }
                    para.name = entry.name;
                    e.SetNumberOfPara(index);
                    e.SetPara(&para, index++, false);
                }
            }
            if (++attempts > n * (n + 1)) return fail(e);
        }
        return true;
    }

  private:
    Entry& first(const std::string& name) {
        for (Entry& entry : entries) {
            if (entry.name == name) return entry;
        }
        throw std::logic_error("a name is gone");
    }

    bool fail(const CExpress& e) {
        error = e.m_ErrorMessage;
        return false;
    }
};

// A grammar check refuses it where it is no parameter.
const std::string long_name(251, 'n');

// Over the names of the variables in that range; now and then over one that there is not.
std::string random_formula(std::mt19937& random, int first, int end) {
    const auto name = [&] {
        return "v" + std::to_string(first + static_cast<int>(
                                                random() % static_cast<unsigned>(end - first + 1)));
    };
    switch (random() % 16) {
        case 0:
            return "strcat(\"a\", \"b\")";
        case 1:
            return "strlen(" + name() + ")";
        case 2:
            return name() + "/0";
        case 3:
            return "strcase(\"x\", 1) like " + name();
        case 4:
            return "left(\"abc\", 2)";
        case 5:
            return "mod(7, " + name() + ")";
        case 6:
            return random() % 8 == 0 ? "1+" : random() % 2 == 0 ? "pi" : "strlen(pi)";
        case 7:
            return "strcat(" + name() + ", \"c\")";
        case 8:
            return "if(" + name() + ", 1, " + name() + ")";
        case 9:
            return "int(2.5)";
        case 10:
            return "int(" + name() + ")^" + name();
        case 11:
            return random() % 8 == 0 ? long_name + "+" + name() : "-" + name();
        default:
            return name() + "+" + name() + "*2";
    }
}

void expect_refused_for_the_long_name(CVariableExpressList& list) {
    CExpress e;
    EXPECT_EQ(e.SetExpression(("1+" + long_name).c_str()), 0);
    EXPECT_EQ(list.Cal(), 0);
    EXPECT_EQ(list.m_strError, e.m_ErrorMessage);
}

// The stored values are seen until the first one is settled.
TEST(Calculation, AFormulaIsRefusedOnceItsLongNameIsGone) {
    CVariableExpressList list;
    list.Append(0, "a", 0.0, ("missing+" + long_name).c_str());
    list.Append(1, "given", 1.0, "");
    list.Append(0, long_name.c_str(), 0.0, "unknown");
    expect_refused_for_the_long_name(list);
}

// With the 51st one settled, formulas see none any more.
TEST(Calculation, AFormulaIsRefusedOnceThereAreTooMany) {
    for (const int more : {51, 52}) {
        CVariableExpressList list;
        list.Append(1, long_name.c_str(), 1.0, "");
        list.Append(0, "a", 0.0, ("missing+" + long_name).c_str());
        list.Append(0, "b", 0.0, "unknown");
        for (int i = 0; i < more; ++i) list.Append(1, std::to_string(i).c_str(), 1.0, "");
        expect_refused_for_the_long_name(list);
    }
}

// Whether "pi" is a number or a text depends on the constant that was read before it, here by
// formulas that fail.
TEST(Calculation, WhatAFailedFormulaReadCounts) {
    CVariableExpressList list;
    list.AppendString(1, "t", "text", "");
    list.Append(0, "reads_text", 0.0, "strlen(t)+missing");
    list.Append(0, "reads_number", 0.0, "missing+1");
    list.Append(0, "p", 0.0, "ln(strlen(pi))");
    EXPECT_EQ(list.Cal(), 0);
    EXPECT_EQ(list.FindByNameAndGetValue("p"), 0.0);
    list.DeleteOneNodeByName("reads_number");
    EXPECT_EQ(list.Cal(), 0);
    EXPECT_EQ(list.FindByNameAndGetValue("p"), std::log(22.0)) << "by the text of its decimals";
}

TEST(Calculation, IsTheLongWayRoundsResult) {
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        // Chains that can be settled, the worst order first, or anything.
        const bool chained = round % 3 == 0;
        const unsigned most = round % 60 == 0 ? 60 : chained ? 16 : 8;
        const int size = static_cast<int>(random() % (most + 1));
        Model model;
        CVariableExpressList list;
        for (int i = 0; i < size; ++i) {
            Entry entry{
                random() % 3 == 0 ? 1 : 0,
                "v" + std::to_string(random() % 5 == 0 ? random() % 4 : static_cast<unsigned>(i)),
                static_cast<double>(random() % 100) / 4.0,
                "t" + std::to_string(i),
                "",
                random() % 4 == 0};
            if (random() % 64 == 0) entry.name = long_name;
            if (entry.type == 0) {
                entry.formula = chained ? random_formula(random, i + 1, std::min(i + 4, size))
                                        : random_formula(random, 0, size);
            }
            if (entry.is_string) {
                entry.value = 0.0;
                list.AppendString(entry.type, entry.name.c_str(), entry.text.c_str(),
                                  entry.formula.c_str());
            } else {
                entry.text.clear();
                list.Append(entry.type, entry.name.c_str(), entry.value, entry.formula.c_str());
            }
            model.entries.push_back(entry);
        }
        for (int repeat = 0; repeat < 3; ++repeat) {
            ASSERT_EQ(list.Cal() == 1, model.cal()) << "round " << round;
            ASSERT_EQ(list.m_strError, model.error) << "round " << round;
            ASSERT_EQ(list.m_nResultType, model.result_type) << "round " << round;
            const CVariableExpress* record = list.GetHead();
            for (const Entry& entry : model.entries) {
                CVariableExpress copy(*record);
                ASSERT_EQ(std::bit_cast<std::uint64_t>(copy.GetValue()),
                          std::bit_cast<std::uint64_t>(entry.value))
                    << "round " << round << ' ' << entry.name;
                ASSERT_EQ(copy.GetStrValue(), entry.text) << "round " << round << ' ' << entry.name;
                record = record->GetNext();
            }
            ASSERT_EQ(record, nullptr);
        }
    }
}

}  // namespace
