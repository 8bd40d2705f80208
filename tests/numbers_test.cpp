// Conversions and decimal functions against the standard library's formatted text, which is slow
// and obviously right, and all of it under a locale with a decimal comma too.

#include <gtest/gtest.h>

#include <bit>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

#include <morandel.h>
#include "arithmetic/functions.h"
#include "base/numbers.h"
#include "base/value.h"

namespace {

using namespace morandel;

std::string printed(const char* format, double value) {
    char text[400];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

std::uint64_t bits(double value) {
    return std::isnan(value) ? 0x7FF8000000000000U : std::bit_cast<std::uint64_t>(value);
}

// As strtod, which for text without a number gives 0; one C library makes -0 of a lone sign.
double parsed(const std::string& text) {
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    return end == text.c_str() ? 0.0 : value;
}

// Doubles of every size, and those that decimals are prone to go wrong with.
class Numbers {
  public:
    double next() {
        switch (m_random() % 6) {
            case 0:
                return std::bit_cast<double>(m_random());
            case 1:
                return static_cast<double>(static_cast<std::int64_t>(m_random() % 2'000'001) -
                                           1'000'000);
            case 2:
                return static_cast<double>(m_random() % 100'000'000) / 1e4 - 5000.0;
            case 3:
                return std::ldexp(static_cast<double>(m_random()),
                                  static_cast<int>(m_random() % 160) - 140);
            case 4:
                return 1.0 - std::ldexp(1.0, -static_cast<int>(m_random() % 60));
            default:
                return std::nextafter(static_cast<double>(m_random() % 1000) / 16.0, 1e9);
        }
    }
    std::uint64_t raw() { return m_random(); }

  private:
    std::mt19937_64 m_random{20'260'101};
};

constexpr int rounds = 200'000;

TEST(Numbers, TextIsReadAsTheStandardConversionDoes) {
    Numbers numbers;
    static constexpr std::string_view alphabet = "0123456789.eE+-xXpPaAfFiInN \t\n\v\f\r()t";
    for (int i = 0; i < rounds; ++i) {
        std::string text;
        if (i % 3 == 0) {
            text = printed(i % 2 == 0 ? "%.17g" : "%a", numbers.next()) + (i % 5 == 0 ? "x" : "");
        } else {
            const auto size = static_cast<std::size_t>(numbers.raw() % 9);
            for (std::size_t j = 0; j < size; ++j)
                text += alphabet[static_cast<std::size_t>(numbers.raw() % alphabet.size())];
        }
        EXPECT_EQ(bits(text_to_number(text)), bits(parsed(text))) << '"' << text << '"';
    }
}

TEST(Numbers, TextOutOfRangeIsInfinityOrZero) {
    for (const char* text : {"1e999",
                             "-1e999",
                             "1e-999",
                             "-1e-999",
                             "1e99999999999999999999",
                             "1e-99999999999999999999",
                             "0e99999999999999999999",
                             "0x1p99999",
                             "0x1p-99999",
                             "0x.0000001p99999",
                             "1e308",
                             "1.8e308",
                             "4.9e-324",
                             "2e-324",
                             "2.5e-324",
                             "0x1p-1074",
                             "0x1p-1075",
                             "0x1.8p-1075",
                             "0x1p1023",
                             "0x1.fffffffffffff8p1023",
                             "17976931348623157e292",
                             "17976931348623159e292",
                             "00000000000000000000000000000000000000000001e400",
                             "0.000000000000000000000000001e-310"}) {
        EXPECT_EQ(bits(text_to_number(text)), bits(std::strtod(text, nullptr))) << text;
    }
    const std::string many_nines(400, '9');
    EXPECT_EQ(text_to_number(many_nines), std::numeric_limits<double>::infinity());
    EXPECT_EQ(text_to_number("0." + std::string(400, '0') + "1"), 0.0);
    EXPECT_EQ(text_to_number("0." + std::string(400, '0') + "1e400"), 0.1);
    EXPECT_EQ(text_to_number("0." + std::string(400, '0') + "1e+900"),
              std::numeric_limits<double>::infinity());
    EXPECT_EQ(text_to_number(many_nines + "e-400"), 1.0);
    // Digits and exponent that pull the other way, where one of the digits is four places.
    EXPECT_EQ(text_to_number("0x1" + std::string(300, '0') + "p-100"),
              std::numeric_limits<double>::infinity());
    EXPECT_EQ(text_to_number("0x." + std::string(300, '0') + "1p100"), 0.0);
}

TEST(Numbers, DigitsAreReadExactly) {
    Numbers numbers;
    for (int i = 0; i < rounds; ++i) {
        std::string digits = std::to_string(numbers.raw());
        digits.insert(static_cast<std::size_t>(numbers.raw() % digits.size()) + 1, ".");
        if (i % 7 == 0) digits += std::to_string(numbers.raw());
        EXPECT_EQ(bits(text_to_number(digits)), bits(std::strtod(digits.c_str(), nullptr)))
            << digits;
    }
    EXPECT_EQ(text_to_number("5."), 5.0);
}

TEST(Numbers, ParametersGoThroughTwentyDecimals) {
    Numbers numbers;
    for (int i = 0; i < rounds; ++i) {
        const double value = i % 2 == 0 ? numbers.next() : numbers.next() * 1e-17;
        const double expected = std::strtod(printed("%.20lf", value).c_str(), nullptr);
        EXPECT_EQ(bits(through_decimals(value)), bits(expected)) << printed("%.17g", value);
    }
    for (const double value : {0x1p-13, 0x1p-14, std::nextafter(0x1p-13, 0.0), -0.0, 5e-324}) {
        EXPECT_EQ(bits(through_decimals(value)),
                  bits(std::strtod(printed("%.20lf", value).c_str(), nullptr)));
    }
}

TEST(Numbers, IntIsTheTextBeforeThePoint) {
    Numbers numbers;
    for (int i = 0; i < rounds; ++i) {
        const double value = numbers.next();
        if (!std::isfinite(value)) continue;
        const std::string text = printed("%f", value);
        const double expected = std::strtod(text.substr(0, text.find('.')).c_str(), nullptr);
        double whole = value;
        EXPECT_EQ(integer_part(whole), value > range_bound ? Error::out_of_range : Error::none);
        if (value > range_bound) continue;
        EXPECT_EQ(bits(whole), bits(expected)) << text;
    }
}

TEST(Numbers, DeciIsTheTextFromThePointOn) {
    Numbers numbers;
    for (int i = 0; i < rounds; ++i) {
        const double value = numbers.next();
        if (!std::isfinite(value)) continue;
        const std::string text = printed("%.15f", value);
        const double expected = std::strtod(("0" + text.substr(text.find('.'))).c_str(), nullptr);
        double decimals = value;
        EXPECT_EQ(decimal_part(decimals), value > range_bound ? Error::out_of_range : Error::none);
        if (value > range_bound) continue;
        EXPECT_EQ(bits(decimals), bits(expected)) << text;
    }
}

// preci step by step on the text of 20 decimals.
double rounded_slowly(double a, int n) {
    const std::string text = printed("%.20lf", a);
    const std::size_t point = text.find('.');
    double whole = std::strtod(text.substr(0, point).c_str(), nullptr);
    std::string digits = "0" + text.substr(point);
    const double rest = a - whole;
    bool kept = false;
    for (const double nines : {0.9999, 0.99999, 0.999999, 0.9999999, 0.99999999, 0.999999999,
                               0.9999999999, 0.99999999999, 0.9999999999999}) {
        kept = kept || rest == nines;
    }
    const std::size_t run = digits.find("9999");
    if (!kept && run != std::string::npos && run > 2) {
        ++digits[run - 1];
        digits.resize(run);
    }
    const auto places = static_cast<std::size_t>(n);
    if (digits.size() > places + 2 && digits[places + 2] > '4') {
        std::size_t last = places + 1;
        for (; last >= 2 && digits[last] == '9'; --last) digits.resize(last);
        if (last >= 2) {
            ++digits[last];
        } else {
            whole += whole > 0.0 || !(a < 0.0) ? 1.0 : -1.0;
        }
    }
    digits.resize(std::min(digits.size(), places + 2));
    const double fraction = std::strtod(digits.c_str(), nullptr);
    return a < 0.0 ? whole - fraction : whole + fraction;
}

TEST(Numbers, PreciRoundsTheDecimalText) {
    Numbers numbers;
    for (int i = 0; i < rounds; ++i) {
        double value = numbers.next();
        if (i % 4 == 0) value = std::round(value * 1e4) / 1e4;
        if (!std::isfinite(value)) continue;
        const double a = value;
        const int n = static_cast<int>(numbers.raw() % 16);
        ASSERT_EQ(round_to_decimals(value, n), Error::none);
        EXPECT_EQ(bits(value), bits(rounded_slowly(a, n))) << printed("%.17g", a) << ' ' << n;
    }
}

TEST(Numbers, ModCountsMultiples) {
    Numbers numbers;
    for (int i = 0; i < 20'000; ++i) {
        const double b =
            static_cast<double>(numbers.raw() % 1000 + 1) / (i % 2 == 0 ? 10.0 : 128.0);
        const double a = i % 3 == 0 ? b * static_cast<double>(numbers.raw() % 500)
                                    : static_cast<double>(numbers.raw() % 100'000) / 100.0;
        double expected = std::fmod(a, b);
        for (double count = 1.0; a - b * count >= 0.0; count += 1.0) {
            if (a - b * count == 0.0) expected = 0.0;
        }
        double rest = a;
        ASSERT_EQ(modulo(rest, b), Error::none);
        EXPECT_EQ(bits(rest), bits(expected)) << a << " mod " << b;
        rest = -a;
        ASSERT_EQ(modulo(rest, b), Error::none);
        EXPECT_EQ(bits(rest), bits(expected == 0.0 && a != 0.0 ? 0.0 : -expected))
            << a << " mod " << b;
    }
}

// The conversion behind r2s, step by step as text.
std::string converted_slowly(double x, int digits) {
    const double a = std::fabs(x);
    double whole = 0.0;
    std::modf(a, &whole);
    std::string integer = printed("%lf", whole);
    integer.erase(integer.find_last_not_of('0') + 1);
    integer.erase(integer.find_last_not_of('.') + 1);
    const bool below_one = a > 0.0 && a < 1.0;
    std::string mantissa = printed("%.14e", (below_one ? a + 1.0 : a) * 1e14);
    mantissa.erase(std::min(mantissa.find('e'), mantissa.size()));
    std::erase(mantissa, '.');
    if (below_one) mantissa.erase(0, 1);
    std::string fraction = std::strtod(integer.c_str(), nullptr) == 0.0 ? mantissa
                           : mantissa.size() <= integer.size()          ? ""
                                                               : mantissa.substr(integer.size());
    if (digits == 0) fraction = "0";
    if (digits > 0 && digits < 15) fraction = fraction.substr(0, static_cast<std::size_t>(digits));
    std::string text = integer + "." + fraction;
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) text.erase(text.find_last_not_of('.') + 1);
    return x < 0.0 && std::strtod(text.c_str(), nullptr) != 0.0 ? "-" + text : text;
}

TEST(Numbers, NumbersBecomeText) {
    Numbers numbers;
    for (int i = 0; i < rounds; ++i) {
        const double x = numbers.next();
        if (!std::isfinite(x)) continue;
        const int digits = static_cast<int>(numbers.raw() % 17) - 1;
        std::string text = "before";
        ASSERT_EQ(number_to_text(x, digits, text), Error::none);
        EXPECT_EQ(text, converted_slowly(x, digits)) << printed("%.17g", x) << ' ' << digits;
    }
    std::string text = "before";
    EXPECT_EQ(number_to_text(1.5, 16, text), Error::too_many_decimals);
    EXPECT_EQ(text, "");
    EXPECT_EQ(number_to_text(1.5, -2, text), Error::not_positive);
}

TEST(Numbers, IntegersSaturate) {
    EXPECT_EQ(to_int(3.9), 3);
    EXPECT_EQ(to_int(-3.9), -3);
    EXPECT_EQ(to_int(1e300), std::numeric_limits<int>::max());
    EXPECT_EQ(to_int(-1e300), std::numeric_limits<int>::min());
    EXPECT_EQ(to_int(2147483647.0), 2147483647);
    EXPECT_EQ(to_int(2147483648.0), 2147483647);
    EXPECT_EQ(to_int(-2147483648.0), std::numeric_limits<int>::min());
    EXPECT_EQ(to_int(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(to_int(std::numeric_limits<double>::infinity()), std::numeric_limits<int>::max());
}

TEST(Numbers, NoLocaleOfTheHostChangesAnything) {
#ifdef _WIN32
    constexpr const char* german = "German_Germany.1252";
#else
    constexpr const char* german = "de_DE.UTF-8";
#endif
    ASSERT_NE(std::setlocale(LC_ALL, german), nullptr)
        << "./test makes this locale; elsewhere: apt install locales-all";
    ASSERT_EQ(printed("%.1f", 1.5), "1,5") << "this locale has no decimal comma";
    CExpress e;
    e.SetNumberOfPara(1);
    MYPARA a{"a", 0.00005, ""};
    e.SetPara(&a, 1, false);
    for (const auto& [formula, number, text] : {std::tuple{"1.5+2.25", 3.75, ""},
                                                {"a", 0.00005, ""},
                                                {"int(2.9999999)", 3.0, ""},
                                                {"deci(3.25)", 0.25, ""},
                                                {"preci(2.675, 2)", 2.68, ""},
                                                {"s2r(\"1.5\")", 1.5, "1.5"},
                                                {"s2r(\"1,5\")", 1.0, "1,5"},
                                                {"r2s(1.25)", 1.25, "1.25"},
                                                {"STRLEN(\"abc\")", 3.0, "abc"}}) {
        EXPECT_EQ(e.SetExpression(formula), 1) << formula;
        EXPECT_EQ(e.CalcExpression(), 1) << formula;
        EXPECT_EQ(e.GetResult(), number) << formula;
        EXPECT_EQ(e.m_StrResult, text) << formula;
    }
    std::setlocale(LC_ALL, "C");
}

}  // namespace
