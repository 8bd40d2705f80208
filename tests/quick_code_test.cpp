// Prepared formulas of numbers, computed by chained steps, against the machine, bit for bit.

#include <gtest/gtest.h>
#include <morandel/c.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "formula/recording.h"
#include "tests/formula_outcome.h"
#include "tests/small_stack.h"

namespace {

using namespace morandel::tests;

constexpr const char* operators[] = {"+",   "-",    "*",    "/",    "^",     " > ", " < ",
                                     " = ", " >= ", " <= ", " <> ", " and ", " or "};
constexpr const char* functions[] = {"-",    "+",      "sqrt",   "sin",    "cos",     "tan",
                                     "ctan", "arcsin", "arccos", "arctan", "arcctan", "ln",
                                     "log",  "int",    "deci",   "not"};
constexpr double specials[] = {0.0,
                               -0.0,
                               1.0,
                               2.0,
                               -1.5,
                               0.5,
                               3.0,
                               1e-5,
                               1e-14,
                               -1e-15,
                               1e-300,
                               1e154,
                               1.7e308,
                               1.75e308,
                               -1.79e308,
                               90.0,
                               1e-13,
                               7.25,
                               2.5,
                               1.5,
                               HUGE_VAL,
                               -HUGE_VAL,
                               std::numeric_limits<double>::quiet_NaN()};

struct Given {
    explicit Given(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) names.push_back("x" + std::to_string(i));
    }

    void fill(std::mt19937_64& random, bool with_specials) {
        values.clear();
        for (std::size_t i = 0; i < names.size(); ++i) {
            const bool is_special = with_specials && random() % 2 == 0;
            values.push_back(is_special ? specials[random() % std::size(specials)]
                                        : static_cast<double>(random() % 4096 + 1) / 128.0);
        }
    }

    [[nodiscard]] OwnedFormula prepare(const std::string& text) const {
        std::vector<morandel_name> list;
        for (const std::string& name : names) {
            list.push_back({name.data(), name.size(), MORANDEL_NUMBER});
        }
        morandel_formula* made = nullptr;
        EXPECT_EQ(morandel_formula_prepare(text.data(), text.size(), list.data(), list.size(), 0,
                                           &made, nullptr),
                  1)
            << text;
        return OwnedFormula(made);
    }

    std::vector<std::string> names;
    std::vector<double> values;
};

// All ways of computing, for these values.
void compare(const std::string& text, const morandel_formula* formula, const Given& given) {
    static const OwnedResult result(morandel_result_create());
    std::vector<morandel_value> list;
    for (const double value : given.values) list.push_back(morandel_number(value));
    const int wanted =
        morandel_formula_compute(formula, list.data(), list.size(), result.get(), nullptr);
    double found = 99.0;
    ASSERT_EQ(
        morandel_formula_compute_numbers(formula, given.values.data(), given.values.size(), &found),
        wanted)
        << text;
    const double number = wanted == 1 ? morandel_result_number(result.get()) : 0.0;
    ASSERT_TRUE((std::isnan(found) && std::isnan(number)) ||
                std::bit_cast<std::uint64_t>(found) == std::bit_cast<std::uint64_t>(number))
        << text << " gives " << found << ", not " << number;
    std::vector<morandel_column> columns;
    for (const double& value : given.values) {
        columns.push_back({MORANDEL_NUMBER, &value, sizeof value, nullptr, nullptr, 0, 0});
    }
    double row = 99.0;
    std::uint8_t status = 99;
    ASSERT_EQ(morandel_formula_columns(formula, columns.data(), columns.size(), 1, &row, &status,
                                       nullptr),
              1);
    EXPECT_EQ(status, wanted == 1 ? MORANDEL_ROW_OK : MORANDEL_ROW_FAILED) << text;
    ASSERT_TRUE((std::isnan(row) && std::isnan(number)) ||
                std::bit_cast<std::uint64_t>(row) == std::bit_cast<std::uint64_t>(number))
        << text << " by columns gives " << row << ", not " << number;
}

void compare_for_many(const std::string& text, Given& given, std::mt19937_64& random,
                      int times = 6) {
    const OwnedFormula formula = given.prepare(text);
    for (int i = 0; i < times; ++i) {
        given.fill(random, i % 2 == 0);
        compare(text, formula.get(), given);
    }
}

// Every two operators, in all ways to join two or three operands or four, which are names or
// numbers.
TEST(QuickCode, OfTwoOperatorsGivesWhatTheMachineGives) {
    std::mt19937_64 random(1);
    Given given(4);
    const std::array<std::array<std::string, 2>, 4> operands{
        {{"x0", "2"}, {"x1", "0.5"}, {"x2", "3"}, {"x3", "0"}}};
    for (const std::string first : operators) {
        for (const std::string second : operators) {
            for (unsigned kinds = 0; kinds < 16; ++kinds) {
                const auto operand = [&](std::size_t i) { return operands[i][kinds >> i & 1U]; };
                const std::string left = '(' + operand(0) + first + operand(1) + ')';
                const std::string right = '(' + operand(2) + first + operand(3) + ')';
                compare_for_many(left + second + operand(2), given, random);
                compare_for_many(operand(0) + second + right, given, random);
                compare_for_many(left + second + right, given, random);
            }
        }
    }
}

TEST(QuickCode, OfFunctionsGivesWhatTheMachineGives) {
    std::mt19937_64 random(2);
    Given given(3);
    for (const std::string outer : functions) {
        compare_for_many(outer + "(x0)", given, random, 40);
        compare_for_many(outer + "(2)", given, random);
        compare_for_many("x1*" + outer + "(x0)", given, random, 20);
        compare_for_many("x1*x2-" + outer + "(x0)", given, random, 20);
        compare_for_many(outer + "(x0-1)/" + outer + "(x1+1)", given, random, 20);
        for (const std::string inner : functions) {
            compare_for_many(outer + '(' + inner + "(x0))+x2", given, random);
        }
    }
}

TEST(QuickCode, OfPowersGivesWhatTheMachineGives) {
    std::mt19937_64 random(3);
    Given given(2);
    for (const char* exponent : {"2", "3", "0.5", "1.5", "2.5", "0", "1", "7", "(-1)", "x1"}) {
        compare_for_many(std::string("x0^") + exponent, given, random, 3000);
        compare_for_many(std::string("(x0-3)^") + exponent + "+x1", given, random, 300);
    }
}

// Of numbers with all their digits, whose squares seldom are what products round to.
TEST(QuickCode, OfSquaresGivesWhatTheMachineGives) {
    std::mt19937_64 random(7);
    Given given(1);
    const OwnedFormula of_name = given.prepare("x0^2");
    const OwnedFormula of_number = given.prepare("(x0-0.5)^2");
    for (int i = 0; i < 40'000; ++i) {
        given.values = {std::ldexp(static_cast<double>(random() >> 11), -40)};
        compare("x0^2", of_name.get(), given);
        compare("(x0-0.5)^2", of_number.get(), given);
    }
}

// All of them but factorials, whatever their operands are. A name alone needs none.
TEST(QuickCode, IsMadeOfAnyOperators) {
    const std::vector<std::string> names{"x0", "x1", "x2"};
    const std::array<double, 3> values{2.5, 0.5, 3.0};
    const auto computes = [&](const std::string& text) {
        double result = 0.0;
        return morandel::formula::Recording(text, names, {}).quick_code().compute(values, result);
    };
    for (const std::string first : operators) {
        for (const char* left : {"x0", "2", "(x0+1)"}) {
            for (const char* right : {"x1", "3", "(x1+x2)"}) {
                EXPECT_TRUE(computes(left + first + right)) << left << first << right;
            }
        }
        for (const char* inner : {"+", "-", "*", "/"}) {
            const std::string text = "(x0+1)" + first + "(x1" + inner + "x2)";
            EXPECT_TRUE(computes(text)) << text;
        }
    }
    for (const std::string function : functions) {
        for (const char* operand : {"(x1)+1", "(1)", "(x1/2)"}) {
            EXPECT_TRUE(computes(function + operand)) << function << operand;
        }
    }
    for (const char* text : {"2.5", "3!"}) EXPECT_TRUE(computes(text)) << text;
    for (const char* text : {"x0", "x2!", "x0/0", "ln(x0-2.5)", "10^308*x2"}) {
        EXPECT_FALSE(computes(text)) << text;
    }
}

// More names than are looked at one by one, more numbers to keep than there is room for,
// factorials, names and numbers alone, and what fails always.
TEST(QuickCode, OfAnySizeGivesWhatTheMachineGives) {
    std::mt19937_64 random(4);
    for (const std::size_t count : {0U, 1U, 7U, 8U, 9U, 10U, 50U}) {
        Given given(count);
        std::string sum = "1";
        for (const std::string& name : given.names) sum += '+' + name;
        compare_for_many(sum, given, random, 60);
        // Which name is beyond the range need not show in the result.
        if (count > 0) compare_for_many("1/" + given.names.back(), given, random, 60);
    }
    for (const std::size_t depth : {10U, 62U, 63U, 64U, 65U, 66U, 80U}) {
        for (const std::string open : {"1+(", "-x0-("}) {
            Given given(1);
            std::string text;
            for (std::size_t i = 0; i < depth; ++i) text += open;
            text += "x0*2";
            text.append(depth, ')');
            compare_for_many(text, given, random);
        }
    }
    Given given(2);
    for (const char* text : {"x0", "x1", "2.5", "1/0", "1/0+x0", "ln(0)*x0", "x0!", "3!+x0", "-x0!",
                             "(-3)", "+x0", "x0/x1", "9^999", "9^999*x0"}) {
        compare_for_many(text, given, random, 60);
    }
}

TEST(QuickCode, NeedsASmallStack) {
    const auto run = [](void*) -> void* {
        std::mt19937_64 random(5);
        Given given(1);
        std::string sum = "x0";
        while (sum.size() < 508) sum += "+x0";
        std::string powers = "x0";
        while (powers.size() < 510) powers += "^1";
        std::string deep;
        for (int i = 0; i < 125; ++i) deep += "1+(";
        deep += "x0";
        deep.append(125, ')');
        std::string signs = "-(";
        while (signs.size() < 330) signs += "-(";
        signs += "x0";
        signs.append(165, ')');
        for (const std::string& text : {sum, powers, deep, signs}) {
            compare_for_many(text, given, random);
            const OwnedFormula formula = given.prepare(text);
            morandel_warnings* warnings = nullptr;
            EXPECT_EQ(morandel_formula_warnings(formula.get(), &warnings, nullptr), 1);
            morandel_warnings_free(warnings);
            const double numbers[] = {1.0, 0.0, HUGE_VAL};
            const morandel_column column{
                MORANDEL_NUMBER, numbers, sizeof(double), nullptr, nullptr, 0, 0};
            double results[3];
            EXPECT_EQ(
                morandel_formula_columns(formula.get(), &column, 1, 3, results, nullptr, nullptr),
                1);
            morandel_error* error = nullptr;
            (void)morandel_formula_row_error(formula.get(), &column, 1, 3, 2, MORANDEL_NUMBER,
                                             &error);
            morandel_error_free(error);
        }
        return nullptr;
    };
    run_on_small_stack(run);
}

}  // namespace
