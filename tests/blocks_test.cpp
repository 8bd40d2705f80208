// Columns of numbers, computed block by block, against the same rows computed one after the other.

#include "engine/blocks.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "engine/levels.h"
#include "engine/machine.h"
#include "engine/well_formed_text.h"

namespace {

using namespace morandel;

constexpr std::array<const char*, 4> names{"a", "b", "c", "d"};

// A formula recorded for four numbers, row by row and in blocks.
struct Recorded {
    explicit Recorded(const std::string& formula) {
        for (std::size_t i = 0; i < names.size(); ++i) {
            is_used[i] = formula.find(names[i]) != std::string::npos;
        }
        registers.make_room(longest_formula);
        parameters.set_count(static_cast<int>(names.size()));
        for (std::size_t i = 0; i < names.size(); ++i) parameters.set_number(i, names[i], 0.0);
        DefaultFloatingPointIfNeeded environment;
        Levels<WellFormedText> levels({formula.c_str(), parameters, environment},
                                      {program, registers});
        levels.get_exp();
        EXPECT_TRUE(levels.source().is_accepted()) << formula;
        EXPECT_TRUE(program.is_numeric) << formula;
    }

    // What the registers hold besides parameters and results.
    std::vector<Blocks::Constant> constants() {
        std::vector<bool> is_result(Registers::first_free + longest_formula + 1, false);
        for (const Step& step : program.steps) is_result[step.result] = true;
        std::vector<Blocks::Constant> found;
        const auto add = [&](Register place) {
            if (place < Registers::first_free || is_result[place]) return;
            found.push_back({place, registers.numbers()[place]});
        };
        for (const Step& step : program.steps) {
            add(step.left);
            if (step.kind != StepKind::unary) add(step.right);
        }
        add(program.result);
        return found;
    }

    // Nothing where the row is not ordinary.
    bool compute(const std::array<double, 4>& row, double& result) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (!is_used[i]) continue;
            parameters.set_number(i, names[i], row[i]);
        }
        if (!parameters.all_in_range() || !run_numbers(program, registers.numbers())) return false;
        result = registers.numbers()[program.result];
        return true;
    }

    std::array<bool, 4> is_used{};
    Registers registers;
    Parameters parameters{registers};
    Program program;
};

constexpr const char* formulas[] = {
    "a",
    "2.5",
    "a+b",
    "(a+b)*c-d/2",
    "a/b",
    "a*b+c*d-a/b",
    "-a*(b-c)",
    "sqrt(a*a+b*b)",
    "sqrt(a^2+b^2)",
    "a^2",
    "a^b",
    "a^0.5+b^3",
    "not(a)+not(b-b)",
    "(a > b) and (c <= d)",
    "(a = b) or (c <> d)",
    "(a >= 2) + (b < 3)",
    "sin(a)*cos(b)+tan(c)",
    "ln(a)+log(b)*int(c)-deci(d)",
    "((a+b)*(c+d)-(a-b)*(c-d))/((a*c)-(b*d))",
};

double special(std::mt19937_64& random) {
    static constexpr double values[] = {0.0,
                                        -0.0,
                                        1.0,
                                        2.0,
                                        -1.0,
                                        1e-5,
                                        1e-14,
                                        -1e-15,
                                        0x1p-13,
                                        1e-300,
                                        1e154,
                                        1.7e308,
                                        1.75e308,
                                        -1.79e308,
                                        5e-324,
                                        std::numeric_limits<double>::infinity(),
                                        -std::numeric_limits<double>::infinity(),
                                        std::numeric_limits<double>::quiet_NaN()};
    return values[random() % std::size(values)];
}

double ordinary(std::mt19937_64& random) {
    return static_cast<double>(random() % 1'000'000 + 1) / 1024.0;
}

std::vector<const BlockKernels*> kernels_at_hand() {
    std::vector<const BlockKernels*> all{&basic_kernels};
#if defined(__linux__) && defined(__x86_64__)
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")) {
        all.push_back(&avx2_kernels);
    }
#endif
    if (&block_kernels() != all.back()) all.push_back(&block_kernels());
    return all;
}

// One row in so many has special values; 0 for none.
void compare(unsigned one_special_in) {
    constexpr std::size_t rows = 1500;
    std::mt19937_64 random(one_special_in + 1);
    std::array<std::vector<double>, 4> columns;
    for (auto& column : columns) {
        for (std::size_t row = 0; row < rows; ++row) {
            const bool is_special = one_special_in != 0 && random() % one_special_in == 0;
            column.push_back(is_special ? special(random) : ordinary(random));
        }
    }
    // The third column is every second number of a longer one, the fourth one number for all rows.
    std::vector<double> spread;
    for (const double number : columns[2]) spread.insert(spread.end(), {number, -1.0});
    const std::array<Blocks::Column, 4> views{{{columns[0].data(), 1},
                                               {columns[1].data(), 1},
                                               {spread.data(), 2},
                                               {columns[3].data(), 0}}};
    for (const char* formula : formulas) {
        Recorded recorded(formula);
        const auto constants = recorded.constants();
        for (const BlockKernels* kernels : kernels_at_hand()) {
            const Blocks blocks(recorded.program, constants, *kernels);
            std::vector<double> results(rows, 99.0);
            std::vector<bool> told(rows, false);
            blocks.compute(views, rows, results.data(), [&](std::size_t row) { told[row] = true; });
            std::size_t told_in_vain = 0;
            for (std::size_t row = 0; row < rows; ++row) {
                double expected = 0.0;
                const bool is_ordinary = recorded.compute(
                    {columns[0][row], columns[1][row], columns[2][row], columns[3][0]}, expected);
                if (told[row]) {
                    told_in_vain += is_ordinary ? 1 : 0;
                    continue;
                }
                ASSERT_TRUE(is_ordinary) << formula << " row " << row;
                ASSERT_EQ(std::bit_cast<std::uint64_t>(results[row]),
                          std::bit_cast<std::uint64_t>(expected))
                    << formula << " row " << row;
            }
            const bool all_ordinary = one_special_in == 0 && formula == formulas[3];
            EXPECT_TRUE(!all_ordinary || told_in_vain == 0) << formula;
        }
    }
}

TEST(Blocks, GiveWhatRowsGive) {
    for (const unsigned one_special_in : {0U, 1000U, 50U, 3U}) compare(one_special_in);
}

// What a number is with 20 decimals.
double written_and_read(double number) {
    NumberBuffer buffer;
    std::string_view text = format_fixed(number, 20, buffer);
    const bool negative = text.front() == '-';
    if (negative) text.remove_prefix(1);
    const double read = text_to_number(text);
    return negative ? -read : read;
}

// Small numbers of all kinds: any, halves of the last decimal and next to them, and whole ones.
double small(std::mt19937_64& random) {
    const double fraction = 1.0 + static_cast<double>(random() >> 12) * 0x1p-52;
    const double half = (static_cast<double>(random() % 1'000'000) + 0.5) / 1e20;
    switch (random() % 6) {
        case 0:
            return std::ldexp(fraction, -8 - static_cast<int>(random() % 70));
        case 1:
            return static_cast<double>(random() % 4096) * 0x1p-26;
        case 2:
            return std::ldexp(static_cast<double>(random() % 256), -21);
        case 3:
            return half;
        case 4:
            return std::nextafter(half, random() % 2 == 0 ? 1.0 : 0.0);
        default:
            return static_cast<double>(random() % 6'200'000'000'000'000) / 1e20;
    }
}

TEST(Blocks, KeepWhatTwentyDecimalsKeep) {
    std::mt19937_64 random(20);
    for (int i = 0; i < 5'000; ++i) {
        std::array<double, 37> numbers;
        for (double& number : numbers) number = (random() % 2 == 0 ? 1.0 : -1.0) * small(random);
        for (const BlockKernels* kernels : kernels_at_hand()) {
            std::array<double, 37> kept;
            ASSERT_TRUE(kernels->keep(numbers.data(), kept.data(), kept.size()));
            for (std::size_t j = 0; j < kept.size(); ++j) {
                const auto wanted = std::bit_cast<std::uint64_t>(written_and_read(numbers[j]));
                ASSERT_EQ(std::bit_cast<std::uint64_t>(kept[j]), wanted) << numbers[j];
                ASSERT_EQ(std::bit_cast<std::uint64_t>(through_decimals(numbers[j])), wanted)
                    << numbers[j];
            }
        }
    }
}

// Whichever row has another exponent than all others.
TEST(Blocks, SquareWhereEveryExponentIsTwo) {
    constexpr std::size_t rows = 37;
    Recorded recorded("a^b");
    const std::vector<double> a(rows, 1.5);
    for (std::size_t other = 0; other <= rows; ++other) {
        std::vector<double> b(rows + 1, 2.0);
        b[other] = 3.0;
        const std::array<Blocks::Column, 4> columns{{{a.data(), 1}, {b.data(), 1}, {}, {}}};
        for (const BlockKernels* kernels : kernels_at_hand()) {
            std::vector<double> results(rows);
            const Blocks blocks(recorded.program, {}, *kernels);
            blocks.compute(columns, rows, results.data(), [](std::size_t) { FAIL(); });
            for (std::size_t row = 0; row < rows; ++row) {
                ASSERT_EQ(results[row], row == other ? 3.375 : 2.25) << row << " of " << other;
            }
        }
    }
}

TEST(Blocks, ComputeAnyNumberOfRows) {
    Recorded recorded("a*2+b");
    const Blocks blocks(recorded.program, recorded.constants());
    std::vector<double> a(2000);
    for (std::size_t i = 0; i < a.size(); ++i) a[i] = static_cast<double>(i);
    const double b = 0.5;
    for (const std::size_t rows : {0U, 1U, 15U, 16U, 17U, 511U, 512U, 513U, 1024U, 2000U}) {
        std::vector<double> results(rows + 1, -7.0);
        const std::array<Blocks::Column, 4> columns{{{a.data(), 1}, {&b, 0}, {&b, 0}, {&b, 0}}};
        blocks.compute(columns, rows, results.data(), [](std::size_t) { FAIL(); });
        for (std::size_t row = 0; row < rows; ++row) {
            ASSERT_EQ(results[row], static_cast<double>(row) * 2.0 + 0.5);
        }
        EXPECT_EQ(results[rows], -7.0) << "nothing is written behind the last row";
    }
}

}  // namespace
