// A host may round another way, trap what is inexact or compute with less precision: outcomes keep
// every bit, and the host's environment is as it was.

#include <gtest/gtest.h>

#include <bit>
#include <cfenv>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include <morandel.h>
#include <morandel/formula.hpp>

#ifdef __SSE2__
#include <xmmintrin.h>
#endif

namespace {

// What the prepared formula gives for a value, alone and in columns.
std::vector<std::string> prepared_outcomes(const char* text, double value) {
    std::vector<std::string> all;
    const auto note = [&all](double number) {
        all.push_back(std::to_string(std::bit_cast<std::uint64_t>(number)));
    };
    try {
        const morandel::Formula formula(text, {"a"});
        for (const morandel::Notice& notice : formula.warnings()) all.push_back(notice.message());
        const std::vector<double> rows{value, 0.1, -value, value};
        std::vector<double> numbers;
        for (const unsigned char status : formula.columns({rows}, numbers)) note(status);
        for (const double number : numbers) note(number);
        const auto error = formula.row_error({rows}, 2);
        all.emplace_back(error ? error->what() : "no error");
        for (const unsigned char status : formula.columns({value}, 1, numbers.data())) note(status);
        note(numbers.front());
        std::vector<std::string> texts;
        formula.columns({rows}, texts);
        all.insert(all.end(), texts.begin(), texts.end());
        const morandel::Result result = formula(value);
        if (result.kind() == morandel::Kind::text) {
            all.push_back(result.text());
        } else {
            note(result.number());
            note(formula.compute_numbers(&value, 1));
        }
    } catch (const morandel::Error& error) {
        all.emplace_back(error.what());
    }
    return all;
}

std::vector<std::string> outcomes() {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double values[] = {0.1,    2.0 / 3.0, 1e-7,     1e-21, 5e-324,
                                 -1e300, 1.7e308,   infinity, nan};
    std::vector<std::string> all;
    const auto note = [&all](double number, const std::string& text) {
        all.push_back(std::to_string(std::bit_cast<std::uint64_t>(number)) + ' ' + text);
    };
    for (const double value : values) {
        for (const char* formula : {"a",
                                    "a/3",
                                    "a*a",
                                    "1/3+0.1",
                                    "a-0.30000000000000004",
                                    "1e",
                                    "sqrt(2)*a",
                                    "sin(a)+ln(2)",
                                    "10^a",
                                    "1/0",
                                    "preci(a, 3)",
                                    "mod(a, 0.07)",
                                    "int(a)+deci(a)",
                                    "r2s(a)",
                                    "r2s(a/3, 5)",
                                    "s2r(\"0.1\")/7",
                                    "170!",
                                    "a > 0.1",
                                    "123456789.123456789*0.1",
                                    "tan(90)"}) {
            CExpress e;
            MYPARA a{"a", value, ""};
            e.SetNumberOfPara(1);
            e.SetPara(&a, 1, false);
            e.SetExpression(formula);
            e.CalcExpression();
            note(e.GetResult(), e.m_StrResult + e.m_ErrorMessage);
            CExpressionCheck check;
            all.emplace_back(check.CheckExpression(formula) ? "faulty" : "well");
            const std::vector<std::string> prepared = prepared_outcomes(formula, value);
            all.insert(all.end(), prepared.begin(), prepared.end());
        }
        std::string text;
        morandel::number_to_text(value, -1, text);
        note(0.0, text);
    }
    CVariableExpressList list;
    list.Append(CVariableExpress::given, "x", 0.1, "");
    list.Append(CVariableExpress::computed, "y", 0.0, "x/3");
    list.Cal();
    note(list.FindByNameAndGetValue("y"), "");
    return all;
}

// What the environment is at the moment, but for what has happened in it.
std::vector<unsigned> environment() {
    std::vector<unsigned> all{static_cast<unsigned>(std::fegetround())};
#ifdef __SSE2__
    constexpr unsigned flags = 0x3F;
    all.push_back(_mm_getcsr() & ~flags);  // the C library tells of the x87 alone
#endif
    return all;
}

void expect_the_same_under(const std::function<void()>& change) {
    const std::vector<std::string> wanted = outcomes();
    std::fenv_t before;
    std::fegetenv(&before);
    change();
    const std::vector<unsigned> changed = environment();
    const std::vector<std::string> found = outcomes();
    const std::vector<unsigned> left = environment();
    std::fesetenv(&before);
    EXPECT_EQ(found, wanted);
    EXPECT_EQ(left, changed);
}

TEST(FloatingPoint, AnyRounding) {
    for (const int rounding : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        expect_the_same_under([rounding] { ASSERT_EQ(std::fesetround(rounding), 0); });
    }
}

#ifdef __SSE2__
TEST(FloatingPoint, NumbersNextToZeroAreZero) {
    constexpr unsigned flush_results_and_operands = 0x8040;
    const unsigned before = _mm_getcsr();
    expect_the_same_under([=] { _mm_setcsr(before | flush_results_and_operands); });
    _mm_setcsr(before);
}
#endif

#ifdef __GLIBC__
TEST(FloatingPoint, TrapsAreOn) {
    expect_the_same_under([] { ASSERT_NE(feenableexcept(FE_ALL_EXCEPT), -1); });
}

TEST(FloatingPoint, TrapsAreOnAgain) {
    std::fenv_t before;
    std::fegetenv(&before);
    feenableexcept(FE_INVALID | FE_DIVBYZERO);
    (void)outcomes();
    const int traps = fegetexcept();
    std::fesetenv(&before);
    EXPECT_EQ(traps, FE_INVALID | FE_DIVBYZERO);
}
#endif

#ifdef _WIN32
TEST(FloatingPoint, TrapsAreOn) {
    // What is inexact or underflows would trap in the C library of Windows itself.
    expect_the_same_under([] { _controlfp(_EM_INEXACT | _EM_UNDERFLOW | _EM_DENORMAL, _MCW_EM); });
}
#ifndef _WIN64
TEST(FloatingPoint, LessPrecision) {
    for (const unsigned precision : {_PC_24, _PC_53}) {
        expect_the_same_under([precision] { _controlfp(precision, _MCW_PC); });
    }
}
#endif
#endif

}  // namespace
