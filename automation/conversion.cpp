#include "automation/conversion.h"

#include <windows.h>

#include <oleauto.h>

#include <array>
#include <charconv>
#include <cmath>
#include <string>

#include "base/floating_point.h"

namespace morandel::automation {
namespace {

class OwnVariant : public VARIANT {
  public:
    OwnVariant() { VariantInit(this); }
    ~OwnVariant() { VariantClear(this); }
    OwnVariant(const OwnVariant&) = delete;
    OwnVariant& operator=(const OwnVariant&) = delete;
};

bool is_number(VARTYPE type) {
    switch (type) {
        case VT_I1:
        case VT_UI1:
        case VT_I2:
        case VT_UI2:
        case VT_I4:
        case VT_UI4:
        case VT_INT:
        case VT_UINT:
        case VT_I8:
        case VT_UI8:
        case VT_R4:
        case VT_R8:
        case VT_CY:
        case VT_DECIMAL:
            return true;
        default:
            return false;
    }
}

// The types that the platform makes of digits.
VARTYPE digits_type(VARTYPE type) {
    return type == VT_INT ? VARTYPE{VT_I4} : type == VT_UINT ? VARTYPE{VT_UI4} : type;
}

HRESULT read_number(VARIANT& to, BSTR text, VARTYPE type, LCID locale) {
    constexpr ULONG notation = NUMPRS_LEADING_WHITE | NUMPRS_TRAILING_WHITE | NUMPRS_LEADING_PLUS |
                               NUMPRS_LEADING_MINUS | NUMPRS_DECIMAL | NUMPRS_EXPONENT |
                               NUMPRS_HEX_OCT;
    const UINT size = SysStringLen(text);
    if (size == 0) return DISP_E_TYPEMISMATCH;
    std::array<BYTE, 512> digits{};
    NUMPARSE parsed{};
    parsed.cDig = static_cast<INT>(digits.size());
    parsed.dwInFlags = notation;
    HRESULT result = VarParseNumFromStr(text, locale, 0, &parsed, digits.data());
    if (FAILED(result)) return result;
    if (parsed.cchUsed != static_cast<INT>(size)) return DISP_E_TYPEMISMATCH;
    const VARTYPE of_digits = digits_type(type);
    result = VarNumFromParseNum(&parsed, digits.data(), 1UL << of_digits, &to);
    if (SUCCEEDED(result)) V_VT(&to) = type;
    return result;
}

template <class Number>
HRESULT write_number(VARIANT& to, Number value) {
    const DefaultFloatingPoint environment;
    if (!std::isfinite(value)) return DISP_E_TYPEMISMATCH;
    std::array<char, 512> plain;
    const auto end =
        std::to_chars(plain.data(), plain.data() + plain.size(), value, std::chars_format::fixed);
    const std::wstring text(plain.data(), end.ptr);
    V_BSTR(&to) = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    if (V_BSTR(&to) == nullptr) return E_OUTOFMEMORY;
    V_VT(&to) = VT_BSTR;
    return S_OK;
}

// An object stands for its default property.
HRESULT default_property(VARIANT& to, IDispatch* object, LCID locale) {
    if (object == nullptr) return DISP_E_TYPEMISMATCH;
    DISPPARAMS none{};
    const HRESULT result = object->Invoke(DISPID_VALUE, IID_NULL, locale, DISPATCH_PROPERTYGET,
                                          &none, &to, nullptr, nullptr);
    return SUCCEEDED(result) && V_VT(&to) != VT_DISPATCH ? S_OK : DISP_E_TYPEMISMATCH;
}

}  // namespace

HRESULT from_host(VARIANT& to, VARIANTARG& from, VARTYPE type, LCID locale) {
    OwnVariant value;
    HRESULT result = VariantCopyInd(&value, &from);
    if (FAILED(result)) return result;
    if (V_VT(&value) == VT_DISPATCH) {
        OwnVariant property;
        result = default_property(property, V_DISPATCH(&value), locale);
        if (FAILED(result)) return result;
        return from_host(to, property, type, locale);
    }
    const VARTYPE given = V_VT(&value);
    if (given == VT_BSTR && is_number(type)) return read_number(to, V_BSTR(&value), type, locale);
    if (given == VT_R8 && type == VT_BSTR) return write_number(to, V_R8(&value));
    if (given == VT_R4 && type == VT_BSTR) return write_number(to, V_R4(&value));
    return VariantChangeTypeEx(&to, &value, LOCALE_INVARIANT, 0, type);
}

HRESULT to_host(VARIANT& to, VARIANT& from, VARTYPE type, LCID locale) {
    if (V_VT(&from) == VT_BSTR && is_number(type)) {
        return read_number(to, V_BSTR(&from), type, LOCALE_INVARIANT);
    }
    return VariantChangeTypeEx(&to, &from, locale, 0, type);
}

}  // namespace morandel::automation
