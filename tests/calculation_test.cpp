// The batch calculation against the model's, where every attempt is made, on random lists with
// chains, cycles, duplicates, texts and faults.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <morandel.h>
#include "tests/model/words.h"
#include "tests/pair.h"
#include "tests/random_formulas.h"

namespace {

using morandel::pairs::Lists;
using morandel::tests::RandomFormulas;
using morandel::tests::setting;

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

// A missing name is still missing, but what is read after it is a text by now, and so is pi then.
TEST(Calculation, AnAttemptThatFailsAgainMayReadAText) {
    for (const char* of_pi : {"sqrt(-pi)", "ln(strlen(pi))"}) {
        Lists lists;
        lists.append(0, 1, "n", 1.0, "");
        lists.append(0, 0, "b", 0.0, "x+t");
        lists.append(0, 0, "c", 0.0, of_pi);
        lists.append_string(0, 1, "t", "s", "");
        EXPECT_EQ(lists.calculate(0), 0);
        EXPECT_EQ(lists.difference().text(), "") << of_pi;
    }
}

// The other way round: pi is a text from the start, and a number once n is read.
TEST(Calculation, AnAttemptThatFailsAgainMayReadANumber) {
    Lists lists;
    lists.append_string(0, 1, "t", "s", "");
    lists.append(0, 0, "a", 0.0, "strlen(t)");
    lists.append(0, 0, "b", 0.0, "x+n");
    lists.append(0, 1, "n", 1.0, "");
    lists.append(0, 0, "c", 0.0, "ln(pi)");
    EXPECT_EQ(lists.calculate(0), 0);
    EXPECT_EQ(lists.difference().text(), "");
}

TEST(Calculation, IsTheLongWayRoundsResult) {
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        // Chains that can be settled, the worst order first, or anything.
        const bool chained = round % 3 == 0;
        const unsigned most = round % 60 == 0 ? 60 : chained ? 16 : 8;
        const int size = static_cast<int>(random() % (most + 1));
        Lists lists;
        for (int i = 0; i < size; ++i) {
            const int type = random() % 3 == 0 ? 1 : 0;
            std::string name =
                "v" + std::to_string(random() % 5 == 0 ? random() % 4 : static_cast<unsigned>(i));
            const double value = static_cast<double>(random() % 100) / 4.0;
            const bool is_string = random() % 4 == 0;
            if (random() % 64 == 0) name = long_name;
            std::string formula;
            if (type == 0) {
                formula = chained ? random_formula(random, i + 1, std::min(i + 4, size))
                                  : random_formula(random, 0, size);
            }
            if (is_string) {
                lists.append_string(0, type, name, "t" + std::to_string(i), formula);
            } else {
                lists.append(0, type, name, value, formula);
            }
        }
        for (int repeat = 0; repeat < 3; ++repeat) lists.calculate(0);
        ASSERT_EQ(lists.difference().text(), "") << "round " << round;
    }
}

std::string readable(const std::string& bytes) {
    std::string text;
    for (const char c : bytes) text += c >= ' ' && c < 0x7F ? c : '?';
    return text;
}

struct Entry {
    int type;
    std::string name;
    double value;
    std::string text;
    std::string formula;
    bool is_string;
};

std::string difference_of(const std::vector<Entry>& entries) {
    Lists lists;
    for (const Entry& entry : entries) {
        if (entry.is_string) {
            lists.append_string(0, entry.type, entry.name, entry.text, entry.formula);
        } else {
            lists.append(0, entry.type, entry.name, entry.value, entry.formula);
        }
    }
    for (int repeat = 0; repeat < 2; ++repeat) lists.calculate(0);
    return lists.difference().text();
}

std::string words(const std::vector<Entry>& entries) {
    std::string words;
    for (const Entry& entry : entries) {
        const std::string value =
            entry.is_string ? '"' + readable(entry.text) + '"' : std::to_string(entry.value);
        words += readable(entry.name) + (entry.type == 1 ? " = " : " := ") + value + "  " +
                 readable(entry.formula) + '\n';
    }
    return words;
}

// One formula that is refused ends all.
bool accepted(const std::string& formula) {
    model::Express e;
    return e.SetExpression(formula.c_str()) == 1;
}

// A strcat whose result is pending doubles it with every attempt, up to megabytes.
bool grows(std::string formula) {
    std::ranges::transform(formula, formula.begin(), model::to_lower);
    return formula.find("strcat", 1) != std::string::npos;
}

// Without the entries, and the bytes of their formulas, that the difference does not need.
void shrink(std::vector<Entry>& entries) {
    for (bool smaller = true; smaller;) {
        smaller = false;
        for (std::size_t i = entries.size(); i-- > 0;) {
            const std::vector<Entry> before = entries;
            entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(i));
            if (!difference_of(entries).empty()) {
                smaller = true;
            } else {
                entries = before;
            }
        }
        for (Entry& entry : entries) {
            for (std::size_t at = entry.formula.size(); at-- > 0;) {
                const std::string before = entry.formula;
                entry.formula.erase(at, 1);
                if (!difference_of(entries).empty()) {
                    smaller = true;
                } else {
                    entry.formula = before;
                }
            }
        }
    }
}

// Of records that matter to one another by what is read and left. MORANDEL_EXHAUSTIVE_RECORDS sets
// the longest lists, 4 unless set.
TEST(Calculation, OfEverySmallListIsTheLongWayRoundsResult) {
    const Entry records[] = {
        {1, "n", 1.5, "", "", false},
        {1, "t", 0.0, "s", "", true},
        {0, "", 0.0, "", "x+t", false},
        {0, "", 0.0, "", "x+n", false},
        {0, "", 0.0, "", "1+x", false},
        {0, "", 0.0, "", "x", false},
        {0, "", 0.0, "", "n+1", false},
        {0, "", 0.0, "", "strlen(t)", false},
        {0, "", 0.0, "", "t+x", false},
        {0, "", 0.0, "", "sqrt(-pi)", false},
        {0, "", 0.0, "", "ln(strlen(pi))", false},
        {0, "", 0.0, "", "ln(pi)", false},
        {0, "", 0.0, "", "c1+1", false},
        {0, "", 0.0, "", "left(\"ab\", 1)", false},
    };
    for (std::size_t size = 1; size <= setting("MORANDEL_EXHAUSTIVE_RECORDS", 4); ++size) {
        std::vector<std::size_t> picked(size);
        for (bool more = true; more;) {
            std::vector<Entry> entries;
            for (std::size_t i = 0; i < size; ++i) {
                entries.push_back(records[picked[i]]);
                if (entries[i].type == 0) entries[i].name = 'c' + std::to_string(i);
            }
            ASSERT_EQ(difference_of(entries), "") << words(entries);
            more = false;
            for (std::size_t& record : picked) {
                if (++record < std::size(records)) {
                    more = true;
                    break;
                }
                record = 0;
            }
        }
    }
}

// With x settled, w comes as far as its call, which fails every second time.
TEST(Calculation, AnAttemptThatFailsAgainMayComeFurther) {
    EXPECT_EQ(difference_of({{0, "v", 0.0, "", "1", false},
                             {0, "w", 0.0, "", "(w/1 < x/strreplace(1, \"\", a))", false},
                             {0, "x", 0.0, "", "2", false}}),
              "");
}

// MORANDEL_RANDOM_LISTS and MORANDEL_RANDOM_SEED set how many and which.
TEST(Calculation, OfAnyFormulasIsTheLongWayRoundsResult) {
    const auto count = setting("MORANDEL_RANDOM_LISTS", 10'000);
    RandomFormulas random(static_cast<std::uint32_t>(setting("MORANDEL_RANDOM_SEED", 1)));
    for (std::uint64_t round = 0; round < count; ++round) {
        std::vector<Entry> entries;
        const std::size_t size = random.below(7);
        random.more_names.clear();
        for (std::size_t i = 0; i <= size; ++i)
            random.more_names.push_back(std::string(1, "vwxyzab"[i]));
        for (std::size_t i = 0; i < size; ++i) {
            Entry entry{random.below(3) == 0 ? 1 : 0,
                        random.more_names[i],
                        random.number(),
                        random.text(),
                        "",
                        random.below(3) == 0};
            if (random.below(8) == 0) entry.name = random.name();
            if (entry.type == 0) {
                do {
                    entry.formula = random.formula();
                } while (grows(entry.formula) ||
                         (random.below(64) != 0 && !accepted(entry.formula)));
            }
            entries.push_back(entry);
        }
        if (difference_of(entries).empty()) continue;
        shrink(entries);
        FAIL() << "round " << round << '\n' << words(entries) << difference_of(entries);
    }
}

}  // namespace
