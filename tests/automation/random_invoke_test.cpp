// Invoke with random calls: any method, any flags, any number of arguments of any type, by value
// and by reference, on objects that live through many of them. MORANDEL_INVOKE_SECONDS makes it run
// for so long, from a seed that is never the same.

#include <gtest/gtest.h>

#include <windows.h>

#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "tests/automation/host.h"

namespace {

using namespace morandel::hosts;

// The arguments of one call, and all that they point at.
class Arguments {
  public:
    explicit Arguments(std::mt19937& random) : m_random(random) {
        const std::size_t count = pick(8);
        for (std::size_t i = 0; i < count; ++i) m_all.push_back(any());
    }
    ~Arguments() {
        for (BSTR text : m_texts) SysFreeString(text);
        for (SAFEARRAY* array : m_arrays) SafeArrayDestroy(array);
    }
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;

    // Mostly without names, else with ids of any value.
    DISPPARAMS parameters() {
        const std::size_t named = pick(8) == 0 ? pick(m_all.size() + 1) : 0;
        for (std::size_t i = 0; i < named; ++i) m_names.push_back(static_cast<DISPID>(pick(6)) - 4);
        return {m_all.data(), m_names.data(), static_cast<UINT>(m_all.size()),
                static_cast<UINT>(named)};
    }

  private:
    std::size_t pick(std::size_t count) { return m_random() % count; }

    std::wstring any_text() {
        static const wchar_t* const pieces[] = {
            L"a",         L"b",          L"+",      L"(",      L")",       L",",
            L"\"",        L"1",          L"2.5",    L"sqrt(",  L"strcat(", L"strsub(a, 1, 2)",
            L"mod(7, 3)", L" and ",      L" like ", L"\x4E2D", L"\xD800",  L"\xDC00",
            L"a+b*2",     L"preci(a, 2)"};
        if (pick(200) == 0) return std::wstring(pick(100'000), L'\x4E2D');
        std::wstring text;
        for (std::size_t i = pick(8); i > 0; --i) {
            if (pick(16) == 0) {
                text += static_cast<wchar_t>(m_random());
            } else {
                text += pieces[pick(std::size(pieces))];
            }
        }
        return text;
    }

    Variant any_value() {
        Variant value;
        switch (pick(12)) {
            case 0:
                return Variant(static_cast<int>(m_random()));
            case 1:
                return Variant(static_cast<int>(pick(4)));
            case 2:
                return Variant(static_cast<double>(pick(1000)) / 8.0);
            case 3:
                return Variant(std::bit_cast<double>(std::uint64_t{m_random()} << 32 | m_random()));
            case 4:
                V_VT(&value) = static_cast<VARTYPE>(pick(24));
                // Those hold what must not be made up.
                if (V_VT(&value) == VT_BSTR || V_VT(&value) == VT_DISPATCH ||
                    V_VT(&value) == VT_UNKNOWN || V_VT(&value) == VT_VARIANT) {
                    V_VT(&value) = VT_NULL;
                }
                V_UI8(&value) = std::uint64_t{m_random()} << 32 | m_random();
                return value;
            case 5:
                V_VT(&value) = VT_ERROR;
                V_ERROR(&value) = DISP_E_PARAMNOTFOUND;
                return value;
            default:
                return Variant(any_text());
        }
    }

    VARIANTARG any() {
        VARIANTARG argument;
        VariantInit(&argument);
        switch (pick(10)) {
            case 0:
                V_VT(&argument) = VT_BYREF | VT_BSTR;
                m_texts.push_back(pick(3) == 0 ? nullptr : SysAllocString(any_text().c_str()));
                V_BSTRREF(&argument) = &m_texts.back();
                return argument;
            case 1:
                V_VT(&argument) = static_cast<VARTYPE>(VT_BYREF | numeric_types[pick(8)]);
                m_rooms.push_back(std::uint64_t{m_random()} << 32 | m_random());
                V_BYREF(&argument) = pick(16) == 0 ? nullptr : &m_rooms.back();
                return argument;
            case 2:
                V_VT(&argument) = VT_ARRAY | VT_I4;
                m_arrays.push_back(SafeArrayCreateVector(VT_I4, 0, static_cast<ULONG>(pick(3))));
                V_ARRAY(&argument) = m_arrays.back();
                return argument;
            case 3:
            case 4:
                m_variants.push_back(any_value());
                return m_variants.back().by_reference();
            default:
                m_variants.push_back(any_value());
                return m_variants.back();
        }
    }

    static constexpr VARTYPE numeric_types[] = {VT_I4,  VT_R8, VT_INT,  VT_I2,
                                                VT_UI1, VT_R4, VT_BOOL, VT_I8};
    std::mt19937& m_random;
    // Where they are, calls write to them.
    std::deque<Variant> m_variants;
    std::deque<BSTR> m_texts;
    std::deque<std::uint64_t> m_rooms;
    std::vector<SAFEARRAY*> m_arrays;
    std::vector<VARIANTARG> m_all;
    std::vector<DISPID> m_names;
};

void run_round(unsigned seed) {
    std::mt19937 random(seed);
    const Host host;
    ASSERT_EQ(host.created, S_OK);
    for (int i = 0; i < 100; ++i) {
        Arguments arguments(random);
        DISPPARAMS parameters = arguments.parameters();
        const auto id = static_cast<DISPID>(random() % 32 == 0 ? random() : random() % 17);
        const auto flags = static_cast<WORD>(random() % 4 == 0 ? random() % 16 : DISPATCH_METHOD);
        std::optional<Variant> value;
        if (random() % 4 != 0) value.emplace();
        EXCEPINFO exception{};
        UINT place = 99;
        const bool wants_exception = random() % 4 != 0;
        const HRESULT result = host.get()->Invoke(
            id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, value ? &*value : nullptr,
            wants_exception ? &exception : nullptr, random() % 4 != 0 ? &place : nullptr);
        SysFreeString(exception.bstrDescription);
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrHelpFile);
        ASSERT_TRUE(result == S_OK || result == E_INVALIDARG ||
                    (result >= DISP_E_UNKNOWNINTERFACE && result <= DISP_E_BUFFERTOOSMALL))
            << std::hex << result;
        if (result == DISP_E_TYPEMISMATCH || result == DISP_E_PARAMNOTFOUND) {
            ASSERT_TRUE(place == 99 || place < parameters.cArgs);
        }
    }
    ASSERT_EQ(six_times_seven(host), 42.0);
}

// The platform keeps freed texts of every length, which would look like memory that is lost. Not
// every import library knows the call.
void keep_no_texts() {
    const FARPROC found = GetProcAddress(GetModuleHandleW(L"oleaut32.dll"), "SetOaNoCache");
    ASSERT_NE(found, nullptr);
    reinterpret_cast<void(STDAPICALLTYPE*)()>(reinterpret_cast<void*>(found))();
}

TEST(RandomInvoke, NeverHarmsTheObject) {
    keep_no_texts();
    const Apartment apartment;
    const char* seconds = std::getenv("MORANDEL_INVOKE_SECONDS");
    const ULONGLONG start = GetTickCount64();
    const ULONGLONG end =
        start + (seconds == nullptr ? 0 : std::strtoull(seconds, nullptr, 10) * 1000);
    const unsigned first_seed = seconds == nullptr ? 1 : static_cast<unsigned>(start);
    unsigned rounds = 0;
    std::size_t memory = 0;
    constexpr unsigned rounds_at_least = 400;
    for (; rounds < rounds_at_least || GetTickCount64() < end; ++rounds) {
        if (rounds == rounds_at_least / 2) memory = memory_in_use();
        run_round(first_seed + rounds);
        ASSERT_FALSE(HasFailure()) << "seed " << first_seed + rounds;
    }
    EXPECT_LT(memory_in_use(), memory + 262'144);
    if (seconds != nullptr) std::printf("%u calls\n", rounds * 100);
}

}  // namespace
