// Invoke from friendly and hostile callers: by value and by reference, results, names, every type
// of VARIANT where it does not belong. Nothing may end the process, and the object answers after.

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "tests/automation/host.h"

namespace {

using namespace morandel::hosts;

class Invoke : public testing::Test {
  protected:
    Invoke() = default;
    void SetUp() override { ASSERT_EQ(m_host.created, S_OK); }
    void TearDown() override { EXPECT_EQ(six_times_seven(m_host), 42.0) << "it still computes"; }

    Apartment m_apartment;
    Host m_host;
    Variant m_given{1};
    Variant m_zero{0.0};
    Variant m_name{std::wstring(L"a")};
    Variant m_empty{std::wstring()};
    Variant m_formula{std::wstring(L"6*7")};
};

VARIANTARG of_type(VARTYPE type) {
    VARIANTARG argument;
    VariantInit(&argument);
    V_VT(&argument) = type;
    return argument;
}

// As programs of some compilers do from the start; signalling and tiny numbers then end what
// computes with them, and on 32 bits what hands them on.
TEST_F(Invoke, HostsMayTrapWhatIsNoOrdinaryNumber) {
    const std::uint64_t bits[] = {0x7FF0000000000001, 1};
    Variant signalling(0.0);
    Variant tiny(0.0);
    std::memcpy(&V_R8(&signalling), &bits[0], sizeof bits[0]);
    std::memcpy(&V_R8(&tiny), &bits[1], sizeof bits[1]);
    const Variant other(std::wstring(L"b"));
    const Variant power(std::wstring(L"10^(0-320)"));
    const unsigned traps = _controlfp(0, 0);
    _controlfp(_EM_INEXACT | _EM_DENORMAL, _MCW_EM);
    const HRESULT set = m_host.call(L"SetValue", {m_given, m_name, signalling, m_empty}).result;
    m_host.call(L"SetValue", {Variant(0), other, m_zero, power});
    const Outcome not_a_number = m_host.call(L"GetValue", {m_name});
    const Outcome small = m_host.call(L"GetValue", {other});
    const HRESULT converted =
        m_host.call(L"SetStringValue", {m_given, Variant(std::wstring(L"c")), tiny, m_empty})
            .result;
    _clearfp();
    _controlfp(traps, _MCW_EM);
    EXPECT_EQ(set, S_OK);
    EXPECT_TRUE(std::isnan(not_a_number.value.number()));
    EXPECT_GT(small.value.number(), 0.0);
    EXPECT_LT(small.value.number(), 1e-319);
    EXPECT_EQ(converted, S_OK);
}

TEST_F(Invoke, TheLastOutputLeftOutIsTheResult) {
    m_host.call(L"SetValue", {m_given, m_name, Variant(2.5), m_empty});
    const Outcome value = m_host.call(L"GetValue", {m_name});
    ASSERT_EQ(V_VT(&value.value), VT_R8);
    EXPECT_EQ(V_R8(&value.value), 2.5);
    const Outcome status = m_host.call(L"GetLastErrorNum", {});
    ASSERT_EQ(V_VT(&status.value), VT_I4);
    EXPECT_EQ(V_I4(&status.value), 1);
    const Outcome text = m_host.call(L"GetStringValue", {m_name});
    EXPECT_EQ(V_VT(&text.value), VT_BSTR);
    // The outputs before it may come by value; they are lost.
    const Variant bad(std::wstring(L"sqrt(\"a\")"));
    const Outcome count = m_host.call(L"ExpressionCheck", {bad, m_zero});
    ASSERT_EQ(V_VT(&count.value), VT_I4);
    EXPECT_EQ(V_I4(&count.value), 1);
    const Outcome name = m_host.call(L"GetExpressionError", {m_zero, m_zero, m_zero, m_zero});
    EXPECT_EQ(name.value.text(), L"sqrt");
    // What is not written is no value.
    const Outcome none = m_host.call(L"ExpressionCheck", {m_formula, m_zero});
    EXPECT_EQ(none.result, S_OK);
    EXPECT_EQ(V_VT(&none.value), VT_EMPTY);
    // And left out by its name in the caller's language.
    VARIANTARG missing = of_type(VT_ERROR);
    V_ERROR(&missing) = DISP_E_PARAMNOTFOUND;
    EXPECT_EQ(m_host.call(L"GetValue", {m_name, missing}).value.type(), VT_R8);
    // As a script calls whose author wants no result.
    VARIANTARG arguments[] = {m_name};
    DISPPARAMS parameters{arguments, nullptr, 1, 0};
    EXPECT_EQ(m_host.get()->Invoke(2, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr,
                                   nullptr),
              S_OK);
}

TEST_F(Invoke, OutputsGoIntoVariablesOfAnyType) {
    m_host.call(L"SetValue", {m_given, m_name, Variant(7.0), m_empty});
    for (Variant& variable : std::vector<Variant>(3)) {
        EXPECT_EQ(m_host.call(L"GetValue", {m_name, variable.by_reference()}).result, S_OK);
        ASSERT_EQ(V_VT(&variable), VT_R8);
        EXPECT_EQ(V_R8(&variable), 7.0);
    }
    Variant was_text(std::wstring(L"before"));
    m_host.call(L"GetValue", {m_name, was_text.by_reference()});
    EXPECT_EQ(V_VT(&was_text), VT_R8);

    double number = 0.0;
    float single = 0.0F;
    long whole = 0;
    short small = 0;
    unsigned char byte = 0;
    long long big = 0;
    VARIANT_BOOL truth = VARIANT_FALSE;
    CY currency{};
    DECIMAL decimal{};
    BSTR text = SysAllocString(L"before");
    const std::vector<std::pair<VARTYPE, void*>> variables = {
        {VT_R8, &number},   {VT_R4, &single},       {VT_I4, &whole}, {VT_INT, &whole},
        {VT_I2, &small},    {VT_UI1, &byte},        {VT_I8, &big},   {VT_BOOL, &truth},
        {VT_CY, &currency}, {VT_DECIMAL, &decimal}, {VT_BSTR, &text}};
    for (const auto& [type, variable] : variables) {
        VARIANTARG argument = of_type(static_cast<VARTYPE>(VT_BYREF | type));
        V_BYREF(&argument) = variable;
        EXPECT_EQ(m_host.call(L"GetValue", {m_name, argument}).result, S_OK) << type;
    }
    EXPECT_EQ(number, 7.0);
    EXPECT_EQ(single, 7.0F);
    EXPECT_EQ(whole, 7);
    EXPECT_EQ(small, 7);
    EXPECT_EQ(byte, 7);
    EXPECT_EQ(big, 7);
    EXPECT_EQ(truth, VARIANT_TRUE);
    EXPECT_EQ(currency.int64, 70'000);
    EXPECT_EQ(decimal.Lo64, 7U);
    EXPECT_EQ(std::wstring(text), L"7");
    SysFreeString(text);
}

TEST_F(Invoke, WhatIsNotWrittenStaysAsItWas) {
    Variant result;
    Variant count(std::wstring(L"before"));
    m_host.call(L"ExpressionCheck", {m_formula, result.by_reference(), count.by_reference()});
    EXPECT_EQ(V_I4(&result), 1);
    EXPECT_EQ(count.text(), L"before");
    Variant type;
    m_host.call(L"get_Variable_Type", {m_given, type.by_reference()});
    EXPECT_EQ(V_VT(&type), VT_EMPTY) << "there is no such variable";
}

TEST_F(Invoke, ValuesThatDoNotFitTheVariable) {
    m_host.call(L"SetValue", {m_given, m_name, Variant(70'000.0), m_empty});
    short small = 5;
    VARIANTARG argument = of_type(VT_BYREF | VT_I2);
    V_I2REF(&argument) = &small;
    const Outcome outcome = m_host.call(L"GetValue", {m_name, argument});
    EXPECT_EQ(outcome.result, DISP_E_OVERFLOW);
    EXPECT_EQ(outcome.argument, 0U);
    EXPECT_EQ(small, 5);
}

TEST_F(Invoke, ArgumentsAreConverted) {
    const Variant kind(std::wstring(L"1"));
    const Variant value(std::wstring(L"2.5"));
    EXPECT_EQ(m_host.call(L"SetValue", {kind, m_name, value, m_empty}).result, S_OK);
    EXPECT_EQ(m_host.call(L"GetValue", {m_name}).value.number(), 2.5);
    m_host.call(L"Clear", {});
    const Variant number_as_name(12);
    VARIANTARG nothing = of_type(VT_EMPTY);
    VARIANTARG truth = of_type(VT_BOOL);
    V_BOOL(&truth) = VARIANT_TRUE;
    EXPECT_EQ(m_host.call(L"SetValue", {truth, number_as_name, nothing, nothing}).result, S_OK);
    EXPECT_EQ(m_host.call(L"GetValue", {number_as_name}).value.number(), 0.0);
}

TEST_F(Invoke, NamedArgumentsComeInAnyOrder) {
    // SetValue VarValue:=8, szExpress:="", szVarName:="a", iVarType:=1
    VARIANTARG arguments[] = {Variant(8.0), m_empty, m_name, m_given};
    DISPID positions[] = {2, 3, 1, 0};
    DISPPARAMS parameters{arguments, positions, 4, 4};
    EXPECT_EQ(m_host.call(1, parameters).result, S_OK);
    EXPECT_EQ(m_host.call(L"GetValue", {m_name}).value.number(), 8.0);

    positions[1] = 2;
    Outcome twice = m_host.call(1, parameters);
    EXPECT_EQ(twice.result, DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(twice.argument, 1U);
    positions[1] = 9;
    Outcome unknown = m_host.call(1, parameters);
    EXPECT_EQ(unknown.result, DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(unknown.argument, 1U);
    positions[1] = -4;
    EXPECT_EQ(m_host.call(1, parameters).result, DISP_E_PARAMNOTFOUND);
    DISPPARAMS some{arguments, positions, 1, 1};
    EXPECT_EQ(m_host.call(1, some).result, DISP_E_PARAMNOTOPTIONAL);
    DISPPARAMS more_names{arguments, positions, 1, 2};
    EXPECT_EQ(m_host.call(1, more_names).result, DISP_E_BADPARAMCOUNT);
}

TEST_F(Invoke, WrongCallsAreRefused) {
    DISPPARAMS none{};
    EXPECT_EQ(m_host.call(6, none).result, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(m_host.call(0, none).result, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(m_host.call(3, none, DISPATCH_PROPERTYGET).result, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(m_host.call(3, none, DISPATCH_PROPERTYPUT).result, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(m_host.call(3, none, DISPATCH_METHOD | DISPATCH_PROPERTYGET).result, S_OK);
    EXPECT_EQ(m_host.get()->Invoke(3, IID_IDispatch, 0, DISPATCH_METHOD, &none, nullptr, nullptr,
                                   nullptr),
              DISP_E_UNKNOWNINTERFACE);
    EXPECT_EQ(
        m_host.get()->Invoke(3, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr),
        E_INVALIDARG);
    DISPPARAMS no_array{nullptr, nullptr, 2, 0};
    EXPECT_EQ(m_host.call(2, no_array).result, E_INVALIDARG);
}

TEST_F(Invoke, WhatAMethodThrowsBecomesAnException) {
    Variant outputs[5];
    std::vector<VARIANTARG> arguments;
    for (Variant& output : outputs) arguments.push_back(output.by_reference());
    const Outcome outcome = m_host.call(L"GetExpressionError", arguments);
    EXPECT_EQ(outcome.result, DISP_E_EXCEPTION);
    EXPECT_EQ(outcome.code, E_INVALIDARG);
    EXPECT_NE(outcome.description, L"");
    for (Variant& output : outputs) EXPECT_EQ(V_VT(&output), VT_EMPTY);
    DISPPARAMS parameters{arguments.data(), nullptr, 5, 0};
    EXPECT_EQ(m_host.get()->Invoke(15, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr,
                                   nullptr),
              DISP_E_EXCEPTION)
        << "also where nobody asks for the reason";

    const Variant foreign(std::wstring(L"\xD83D\xDE00"));
    const Outcome unheld = m_host.call(L"SetValue", {m_given, foreign, m_zero, m_empty});
    EXPECT_EQ(unheld.result, DISP_E_EXCEPTION);
    EXPECT_EQ(unheld.code, E_INVALIDARG);
    EXPECT_EQ(unheld.description, L"code page 936 has no character U+1F600");
}

// Every method with each number of arguments, all of one type: of every type there is, by value
// and by reference, with and without something behind the pointer.
TEST_F(Invoke, HostileArgumentsOfEveryType) {
    static std::uint64_t room[16];
    std::vector<VARIANTARG> hostile;
    for (int type = 0; type <= 80; ++type) {
        for (const int extra : {0, int{VT_BYREF}, int{VT_ARRAY}, int{VT_BYREF} | int{VT_ARRAY},
                                int{VT_VECTOR}, 0x8000}) {
            VARIANTARG argument = of_type(static_cast<VARTYPE>(type | extra));
            hostile.push_back(argument);
            const bool may_point = (extra & VT_BYREF) != 0 && type != VT_BSTR &&
                                   type != VT_VARIANT && type != VT_DISPATCH &&
                                   type != VT_UNKNOWN && type != VT_RECORD &&
                                   (extra & VT_ARRAY) == 0;
            if (may_point) {
                V_BYREF(&argument) = room;
                hostile.push_back(argument);
            }
        }
    }
    hostile.push_back(of_type(0xFFFF));
    VARIANTARG itself = of_type(VT_BYREF | VT_VARIANT);
    V_VARIANTREF(&itself) = &itself;
    hostile.push_back(itself);
    VARIANTARG nan = of_type(VT_R8);
    V_R8(&nan) = std::nan("");
    hostile.push_back(nan);
    Variant long_text(std::wstring(100'000, L'\x4E2D'));
    hostile.push_back(long_text);
    Variant with_nul(std::wstring(L"a\0b", 3));
    hostile.push_back(with_nul);
    Variant half_pair(std::wstring(L"\xD800"));
    hostile.push_back(half_pair);

    int calls = 0;
    for (DISPID id = -5; id <= 17; ++id) {
        for (VARIANTARG& argument : hostile) {
            for (UINT count = 0; count <= 7; ++count) {
                std::vector<VARIANTARG> arguments(count, argument);
                DISPPARAMS parameters{arguments.data(), nullptr, count, 0};
                const Outcome outcome = m_host.call(id, parameters);
                const bool is_standard = outcome.result == S_OK || outcome.result == E_INVALIDARG ||
                                         (outcome.result >= DISP_E_UNKNOWNINTERFACE &&
                                          outcome.result <= DISP_E_BUFFERTOOSMALL);
                EXPECT_TRUE(is_standard) << std::hex << outcome.result << " method " << id
                                         << " type " << V_VT(&argument);
                const bool is_method = id >= 1 && id <= 15 && id != 6;
                if (count == 7 && is_method) {
                    EXPECT_EQ(outcome.result, DISP_E_BADPARAMCOUNT);
                }
                ++calls;
            }
        }
        m_host.call(L"Clear", {});
    }
    EXPECT_GT(calls, 50'000);
}

TEST_F(Invoke, TooFewArgumentsAreCounted) {
    EXPECT_EQ(m_host.call(L"SetValue", {}).result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(m_host.call(L"SetValue", {m_given, m_name, m_zero}).result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(m_host.call(L"GetExpressionError", {m_zero, m_zero}).result, DISP_E_BADPARAMCOUNT)
        << "only the last one may be left out, or all";
    EXPECT_EQ(m_host.call(L"GetValue", {}).result, DISP_E_BADPARAMCOUNT);
}

TEST_F(Invoke, WrongTypesNameTheArgument) {
    VARIANTARG array = of_type(VT_ARRAY | VT_I4);
    Outcome outcome = m_host.call(L"SetValue", {m_given, array, m_zero, m_empty});
    EXPECT_EQ(outcome.result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(outcome.argument, 2U) << "counted from the last";
    const Variant word(std::wstring(L"word"));
    outcome = m_host.call(L"SetValue", {m_given, m_name, word, m_empty});
    EXPECT_EQ(outcome.result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(outcome.argument, 1U);
    outcome = m_host.call(L"SetValue", {Variant(1e10), m_name, m_zero, m_empty});
    EXPECT_EQ(outcome.result, DISP_E_OVERFLOW);
    EXPECT_EQ(outcome.argument, 3U);
    outcome = m_host.call(L"GetValue", {m_name, of_type(VT_BYREF | VT_DISPATCH)});
    EXPECT_EQ(outcome.result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(outcome.argument, 0U);
    outcome = m_host.call(L"GetValue", {m_name, of_type(VT_BYREF | VT_R8)});
    EXPECT_EQ(outcome.result, DISP_E_BADVARTYPE) << "points nowhere";
}

}  // namespace
