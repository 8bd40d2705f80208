// Numbers and texts of hosts in every country, and the outputs of a call as an array.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "tests/automation/host.h"

namespace {

using namespace morandel::hosts;

constexpr LCID german = 0x0407;
constexpr LCID english = 0x0409;
constexpr LCID chinese = 0x0804;

class Conversion : public testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(m_host.created, S_OK); }

    Outcome set(const VARIANTARG& value) {
        m_host.call(L"Clear", {});
        return m_host.call(L"SetValue", {m_given, m_name, value, m_empty});
    }
    double value() { return m_host.call(L"GetValue", {m_name}).value.number(); }

    Apartment m_apartment;
    Host m_host;
    Variant m_given{1};
    Variant m_computed{0};
    Variant m_zero{0.0};
    Variant m_name{std::wstring(L"a")};
    Variant m_empty{std::wstring()};
};

TEST_F(Conversion, TextsAreNumbersAsTheCallerWritesThem) {
    const struct {
        LCID locale;
        const wchar_t* text;
        double value;
    } numbers[] = {
        {german, L"2,5", 2.5},       {german, L"-2,5", -2.5},  {german, L"25", 25.0},
        {english, L"2.5", 2.5},      {english, L" 7 ", 7.0},   {english, L"1e3", 1000.0},
        {english, L"+1.5E-1", 0.15}, {chinese, L"12.5", 12.5}, {english, L"&H10", 16.0},
    };
    for (const auto& [locale, text, wanted] : numbers) {
        m_host.locale = locale;
        EXPECT_EQ(set(Variant(std::wstring(text))).result, S_OK) << locale << ' ' << text;
        EXPECT_DOUBLE_EQ(value(), wanted) << locale << ' ' << text;
    }
}

TEST_F(Conversion, OtherTextsAreNoNumbers) {
    const struct {
        LCID locale;
        const wchar_t* text;
    } others[] = {
        {german, L"2.5"},    {german, L"1.234"},  {german, L"1.234,5"}, {english, L"2,5"},
        {english, L"1,234"}, {chinese, L"1,234"}, {english, L"5 kg"},   {english, L"$5"},
        {english, L"(5)"},   {english, L"5-"},    {english, L"1 2"},    {english, L""},
        {english, L" "},     {english, L"True"},  {english, L"2.5.1"},
    };
    for (const auto& [locale, text] : others) {
        m_host.locale = locale;
        const Outcome outcome = set(Variant(std::wstring(text)));
        EXPECT_EQ(outcome.result, DISP_E_TYPEMISMATCH) << locale << ' ' << text;
        EXPECT_EQ(outcome.argument, 1U);
        const Outcome kind =
            m_host.call(L"SetValue", {Variant(std::wstring(text)), m_name, m_zero, m_empty});
        EXPECT_EQ(kind.result, DISP_E_TYPEMISMATCH) << locale << ' ' << text;
    }
}

TEST_F(Conversion, WholeNumbersAreRoundedAndHaveAnEnd) {
    const Variant two_and_a_half(std::wstring(L"2,5"));
    m_host.locale = german;
    const Variant name(std::wstring(L"x"));
    m_host.call(L"ValidateExpression", {Variant(std::wstring(L"x+y+z"))});
    EXPECT_EQ(m_host.call(L"get_Variable", {two_and_a_half}).value.text(), L"y");
    EXPECT_EQ(m_host.call(L"get_Variable", {Variant(std::wstring(L"99999999999"))}).result,
              DISP_E_OVERFLOW);
}

TEST_F(Conversion, NumbersAreFormulasThatTheLanguageReads) {
    for (const LCID locale : {german, english}) {
        m_host.locale = locale;
        for (const double number : {1e15, -1e15, 1e16, 1e300, 1.7976931348623157e308, 2.5, -0.1,
                                    1e-7, 5e-324, 0.1 + 0.2, 123456789012345678.0}) {
            m_host.call(L"Clear", {});
            EXPECT_EQ(
                m_host.call(L"SetValue", {m_computed, m_name, m_zero, Variant(number)}).result,
                S_OK);
            EXPECT_EQ(value(), number);
            EXPECT_EQ(m_host.call(L"ValidateExpression", {Variant(number)}).value.lVal, 1);
        }
    }
    VARIANTARG single;
    V_VT(&single) = VT_R4;
    V_R4(&single) = 0.1F;
    m_host.call(L"Clear", {});
    m_host.call(L"SetValue", {m_computed, m_name, m_zero, single});
    EXPECT_EQ(value(), 0.1);
    for (const double none : {HUGE_VAL, std::nan("")}) {
        const Outcome outcome =
            m_host.call(L"SetValue", {m_computed, m_name, m_zero, Variant(none)});
        EXPECT_EQ(outcome.result, DISP_E_TYPEMISMATCH);
        EXPECT_EQ(outcome.argument, 0U);
    }
}

// An object of the host's, as a cell of a spreadsheet, whose default property is a text or a
// number.
class Cell final : public IDispatch {
  public:
    explicit Cell(Variant content) : m_content(std::move(content)) {}
    STDMETHODIMP QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT* result,
                        EXCEPINFO*, UINT*) override {
        if (id != DISPID_VALUE || flags != DISPATCH_PROPERTYGET) return DISP_E_MEMBERNOTFOUND;
        return VariantCopy(result, &m_content);
    }

  private:
    Variant m_content;
};

TEST_F(Conversion, ObjectsStandForTheirDefaultProperty) {
    m_host.locale = german;
    Cell text(Variant(std::wstring(L"2,5")));
    Cell number(Variant(1e15));
    Cell itself{Variant()};
    VARIANTARG cell;
    V_VT(&cell) = VT_DISPATCH;
    V_DISPATCH(&cell) = &text;
    EXPECT_EQ(set(cell).result, S_OK);
    EXPECT_EQ(value(), 2.5);
    V_DISPATCH(&cell) = &number;
    m_host.call(L"Clear", {});
    EXPECT_EQ(m_host.call(L"SetValue", {m_computed, m_name, m_zero, cell}).result, S_OK);
    EXPECT_EQ(value(), 1e15);
    V_DISPATCH(&cell) = &itself;
    EXPECT_EQ(set(cell).result, S_OK) << "nothing is 0";
    V_DISPATCH(&cell) = nullptr;
    EXPECT_EQ(set(cell).result, DISP_E_TYPEMISMATCH);
}

TEST_F(Conversion, OutputsAreTextsAsTheCallerWritesThem) {
    set(Variant(2.5));
    for (const auto& [locale, wanted] : {std::pair{german, L"2,5"}, std::pair{english, L"2.5"}}) {
        m_host.locale = locale;
        BSTR text = SysAllocString(L"before");
        VARIANTARG variable;
        V_VT(&variable) = VT_BYREF | VT_BSTR;
        V_BSTRREF(&variable) = &text;
        EXPECT_EQ(m_host.call(L"GetValue", {m_name, variable}).result, S_OK);
        EXPECT_EQ(std::wstring(text), wanted);
        SysFreeString(text);
    }
}

TEST_F(Conversion, TextsOfTheLibraryAreNumbersAsItWritesThem) {
    m_host.locale = german;
    double number = -1.0;
    VARIANTARG variable;
    V_VT(&variable) = VT_BYREF | VT_R8;
    V_R8REF(&variable) = &number;
    m_host.call(L"SetStringValue", {m_given, m_name, Variant(std::wstring(L"2.5")), m_empty});
    EXPECT_EQ(m_host.call(L"GetStringValue", {m_name, variable}).result, S_OK);
    EXPECT_EQ(number, 2.5);
    m_host.call(L"Clear", {});
    m_host.call(L"SetStringValue", {m_given, m_name, Variant(std::wstring(L"1,234")), m_empty});
    EXPECT_EQ(m_host.call(L"GetStringValue", {m_name, variable}).result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(number, 2.5);
}

std::vector<std::wstring> elements(const Variant& array) {
    if (array.type() != (VT_ARRAY | VT_VARIANT)) return {L"no array"};
    std::vector<std::wstring> texts;
    LONG last = -1;
    SafeArrayGetUBound(V_ARRAY(&array), 1, &last);
    for (LONG i = 0; i <= last; ++i) {
        Variant element;
        SafeArrayGetElement(V_ARRAY(&array), &i, &element);
        const VARTYPE type = element.type();
        if (type == VT_I4) texts.push_back(std::to_wstring(V_I4(&element)));
        if (type == VT_BSTR) texts.push_back(element.text());
        if (type == VT_EMPTY) texts.push_back(L"-");
    }
    return texts;
}

TEST_F(Conversion, AllOutputsLeftOutAreAnArray) {
    using Texts = std::vector<std::wstring>;
    const Variant bad(std::wstring(L"\"a\"*2+sqrt(\"b\")"));
    const Variant good(std::wstring(L"1+2"));
    EXPECT_EQ(elements(m_host.call(L"ExpressionCheck", {bad}).value), (Texts{L"0", L"2"}));
    EXPECT_EQ(elements(m_host.call(L"GetExpressionError", {}).value),
              (Texts{L"1", L"1", L"5", L"1", L"*"}));
    VARIANTARG missing;
    V_VT(&missing) = VT_ERROR;
    V_ERROR(&missing) = DISP_E_PARAMNOTFOUND;
    EXPECT_EQ(elements(m_host.call(L"ExpressionCheck", {bad, missing, missing}).value),
              (Texts{L"0", L"2"}));
    EXPECT_EQ(elements(m_host.call(L"ExpressionCheck", {good}).value), (Texts{L"1", L"-"}));

    const Outcome none = m_host.call(L"GetExpressionError", {});
    EXPECT_EQ(none.result, DISP_E_EXCEPTION);
    EXPECT_EQ(none.code, E_INVALIDARG);
    EXPECT_EQ(none.value.type(), VT_EMPTY);
    // Where nobody wants a result.
    VARIANTARG formula = bad;
    DISPPARAMS parameters{&formula, nullptr, 1, 0};
    EXPECT_EQ(m_host.get()->Invoke(14, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr,
                                   nullptr),
              S_OK);
    EXPECT_EQ(
        m_host.call(L"GetExpressionError", {m_zero, missing, missing, missing, missing}).result,
        DISP_E_PARAMNOTOPTIONAL);
}

}  // namespace
