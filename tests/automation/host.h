// A late-bound client of the automation object, as scripting hosts are.

#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <utility>
#include <vector>

#include "morandel_com.h"

namespace morandel::hosts {

// COM for the length of a test.
class Apartment {
  public:
    Apartment() { CoInitialize(nullptr); }
    ~Apartment() { CoUninitialize(); }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
};

class Variant : public VARIANT {
  public:
    Variant() { VariantInit(this); }
    explicit Variant(int value) : Variant() {
        V_VT(this) = VT_I4;
        V_I4(this) = value;
    }
    explicit Variant(double value) : Variant() {
        V_VT(this) = VT_R8;
        V_R8(this) = value;
    }
    explicit Variant(const std::wstring& value) : Variant() {
        V_VT(this) = VT_BSTR;
        V_BSTR(this) = SysAllocStringLen(value.data(), static_cast<UINT>(value.size()));
    }
    Variant(Variant&& other) noexcept : VARIANT(other) { VariantInit(&other); }
    Variant& operator=(Variant&& other) noexcept {
        std::swap(static_cast<VARIANT&>(*this), static_cast<VARIANT&>(other));
        return *this;
    }
    ~Variant() { VariantClear(this); }

    // As a script hands on a variable of its own.
    [[nodiscard]] VARIANTARG by_reference() {
        VARIANTARG argument;
        VariantInit(&argument);
        V_VT(&argument) = VT_BYREF | VT_VARIANT;
        V_VARIANTREF(&argument) = this;
        return argument;
    }
    [[nodiscard]] VARTYPE type() const { return V_VT(this); }
    [[nodiscard]] double number() const { return V_VT(this) == VT_R8 ? V_R8(this) : -99.0; }
    [[nodiscard]] std::wstring text() const {
        if (V_VT(this) != VT_BSTR) return L"(no text)";
        return {V_BSTR(this), SysStringLen(V_BSTR(this))};
    }
};

struct Outcome {
    HRESULT result = E_FAIL;
    Variant value;
    UINT argument = 99;
    HRESULT code = S_OK;  // of the exception
    std::wstring description;
};

// The object, through its IDispatch alone.
class Host {
  public:
    Host() {
        created = CoCreateInstance(CLSID_ComExpress, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                   reinterpret_cast<void**>(&m_dispatch));
    }
    ~Host() {
        if (m_dispatch != nullptr) m_dispatch->Release();
    }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    [[nodiscard]] DISPID id_of(const std::wstring& name) const {
        LPOLESTR names[] = {const_cast<wchar_t*>(name.c_str())};
        DISPID id = DISPID_UNKNOWN;
        m_dispatch->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
        return id;
    }

    // The arguments in the order of the parameters.
    Outcome call(const std::wstring& name, std::vector<VARIANTARG> arguments,
                 WORD flags = DISPATCH_METHOD) const {
        std::vector<VARIANTARG> reversed(arguments.rbegin(), arguments.rend());
        DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
        return call(id_of(name), parameters, flags);
    }

    Outcome call(DISPID id, DISPPARAMS& parameters, WORD flags = DISPATCH_METHOD) const {
        Outcome outcome;
        EXCEPINFO exception{};
        outcome.result = m_dispatch->Invoke(id, IID_NULL, locale, flags, &parameters,
                                            &outcome.value, &exception, &outcome.argument);
        outcome.code = exception.scode;
        if (exception.bstrDescription != nullptr) outcome.description = exception.bstrDescription;
        SysFreeString(exception.bstrDescription);
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrHelpFile);
        return outcome;
    }

    [[nodiscard]] IDispatch* get() const { return m_dispatch; }

    HRESULT created = E_FAIL;
    LCID locale = LOCALE_USER_DEFAULT;  // of the calls

  private:
    IDispatch* m_dispatch = nullptr;
};

// What the object gives for 6*7, whatever was called before; -99 where a call fails.
inline double six_times_seven(const Host& host) {
    const Variant name(std::wstring(L"a"));
    host.call(L"Clear", {});
    const Outcome set =
        host.call(L"SetValue", {Variant(0), name, Variant(0.0), Variant(std::wstring(L"6*7"))});
    const Outcome outcome = host.call(L"GetValue", {name});
    return set.result == S_OK && outcome.result == S_OK ? outcome.value.number() : -99.0;
}

// Bytes on the process's heaps.
inline std::size_t memory_in_use() {
    std::size_t bytes_in_use = 0;
    HANDLE heaps[32];
    const DWORD count = GetProcessHeaps(32, heaps);
    for (DWORD i = 0; i < count && i < 32; ++i) {
        PROCESS_HEAP_ENTRY entry{};
        while (HeapWalk(heaps[i], &entry) != 0) {
            if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes_in_use += entry.cbData;
        }
    }
    return bytes_in_use;
}

inline std::wstring to_wide(const std::string& gbk) {
    std::wstring wide(gbk.size(), L'\0');
    const int size = MultiByteToWideChar(936, 0, gbk.data(), static_cast<int>(gbk.size()),
                                         wide.data(), static_cast<int>(wide.size()));
    wide.resize(static_cast<std::size_t>(size));
    return wide;
}

}  // namespace morandel::hosts
