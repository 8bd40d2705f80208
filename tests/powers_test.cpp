// The quick powers against the C library's, bit for bit.

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <random>

#include "arithmetic/operators.h"

namespace {

// Those that are quick.
constexpr double exponents[] = {2.0, 0.5, 3.0, 1.5, 2.5};

void expect_as_the_library(double base, double exponent) {
    ASSERT_EQ(std::bit_cast<std::uint64_t>(morandel::power(base, exponent)),
              std::bit_cast<std::uint64_t>(morandel::library_power(base, exponent)))
        << base << '^' << exponent;
}

TEST(Powers, OfAnyNumberAreTheLibrarys) {
    std::mt19937_64 random(3);
    for (int i = 0; i < 2'000'000; ++i) {
        const auto bits = random();
        // Any bits, numbers of every day, and some with few bits.
        const double numbers[] = {std::bit_cast<double>(bits),
                                  1.0 + static_cast<double>(bits >> 11) * 0x1p-53,
                                  static_cast<double>(bits >> 40) / 64.0};
        for (const double number : numbers) {
            if (std::isnan(number)) continue;
            for (const double exponent : exponents) expect_as_the_library(number, exponent);
        }
    }
}

// Squares that lie halfway between two numbers but for their last bits, and their roots.
TEST(Powers, NextToATieAreTheLibrarys) {
    std::mt19937_64 random(4);
    for (int i = 0; i < 300'000; ++i) {
        const double half = std::sqrt(1.0 + (static_cast<double>(random() >> 12) + 0.5) * 0x1p-52);
        for (double base = half - 4 * 0x1p-52; base <= half + 4 * 0x1p-52; base += 0x1p-52) {
            expect_as_the_library(base, 2.0);
            expect_as_the_library(base * base, 0.5);
        }
    }
}

// Where the places of a number are half as wide on one side.
TEST(Powers, NextToPowersOfTwoAreTheLibrarys) {
    for (const double exponent : {2.0, 3.0, 0.5, 1.5, 2.5}) {
        for (int power = -100; power <= 100; ++power) {
            double base = std::exp2(power / exponent);
            for (int i = 0; i < 8; ++i) base = std::nextafter(base, 0.0);
            for (int i = 0; i < 16; ++i) {
                expect_as_the_library(base, exponent);
                base = std::nextafter(base, HUGE_VAL);
            }
        }
    }
}

TEST(Powers, OfTheLimitsAreTheLibrarys) {
    for (const double base :
         {0.0, -0.0, 1.0, -1.0, 2.0, -2.0, 1e-12, 1e12, -1e-12, -1e12, 1e-100, 1e100, 0x1p-1074,
          0x1p-1022, 1.7976931348623157e308, HUGE_VAL, -HUGE_VAL}) {
        for (const double exponent : {2.0, 0.5, -0.5, -2.0, 1.0, 0.0, 3.0, 1.5, 2.5}) {
            if (!std::isnan(std::pow(base, exponent))) expect_as_the_library(base, exponent);
        }
    }
}

}  // namespace
