#include "automation/arguments.h"

#include <windows.h>

#include <oleauto.h>

#include <bit>
#include <cstdint>
#include <cstring>
#include <new>
#include <optional>

#include "automation/code_page.h"
#include "automation/conversion.h"

namespace morandel::automation {
namespace {

// What an output holds until it is written. No method gives these values.
constexpr int unwritten_int = -0x5EED5EED;
constexpr auto unwritten_double = std::uint64_t{0xFFF85EED5EED5EED};  // a NaN

bool is_written(const VARIANT& output) {
    switch (V_VT(&output)) {
        case VT_I4:
            return V_I4(&output) != unwritten_int;
        case VT_R8:
            return std::bit_cast<std::uint64_t>(V_R8(&output)) != unwritten_double;
        default:
            return V_BSTR(&output) != nullptr;
    }
}

// A script's variable, handed on by reference, may be a reference to a variable in turn.
VARIANTARG* variable_of(VARIANTARG* given) {
    for (int depth = 0; V_VT(given) == (VT_BYREF | VT_VARIANT); ++depth) {
        if (V_VARIANTREF(given) == nullptr || depth == 8) return nullptr;
        given = V_VARIANTREF(given);
    }
    return given;
}

// Bytes of a simple value of that type; 0 for what is none, and so is no number or text.
std::size_t simple_size(VARTYPE type) {
    switch (type) {
        case VT_I1:
        case VT_UI1:
            return 1;
        case VT_I2:
        case VT_UI2:
        case VT_BOOL:
            return 2;
        case VT_I4:
        case VT_UI4:
        case VT_INT:
        case VT_UINT:
        case VT_R4:
            return 4;
        case VT_I8:
        case VT_UI8:
        case VT_R8:
        case VT_CY:
        case VT_DATE:
            return 8;
        case VT_BSTR:
            return sizeof(BSTR);
        case VT_DECIMAL:
            return sizeof(DECIMAL);
        default:
            return 0;
    }
}

bool is_input(VARTYPE type) {
    return simple_size(type) != 0 || type == VT_EMPTY || type == VT_NULL || type == VT_ERROR ||
           type == VT_DISPATCH || type == VT_UNKNOWN;
}

// Into a variable of a stated type.
HRESULT write_simple(VARIANTARG& variable, VARIANT& output, LCID locale) {
    const auto type = static_cast<VARTYPE>(V_VT(&variable) & ~VT_BYREF);
    VARIANT changed;
    VariantInit(&changed);
    const HRESULT result = to_host(changed, output, type, locale);
    if (FAILED(result)) return result;
    if (type == VT_DECIMAL) {
        *V_DECIMALREF(&variable) = V_DECIMAL(&changed);
        return S_OK;
    }
    if (type == VT_BSTR) SysFreeString(*V_BSTRREF(&variable));
    std::memcpy(V_BYREF(&variable), &V_I8(&changed), simple_size(type));
    return S_OK;
}

// Into a variable that takes any type.
HRESULT write_any(VARIANT& variable, VARIANT& output) {
    VARIANT copy;
    VariantInit(&copy);
    HRESULT result = VariantCopy(&copy, &output);
    if (SUCCEEDED(result)) result = VariantClear(&variable);
    if (FAILED(result)) {
        VariantClear(&copy);
        return result;
    }
    variable = copy;
    return S_OK;
}

}  // namespace

Arguments::~Arguments() {
    for (Argument& argument : m_arguments) {
        if (V_VT(&argument.output) == VT_BSTR) SysFreeString(V_BSTR(&argument.output));
    }
}

// As hosts tell of an argument between others that is none.
bool Arguments::left_out(const Argument& argument) {
    return argument.given == nullptr ||
           (V_VT(argument.given) == VT_ERROR && V_ERROR(argument.given) == DISP_E_PARAMNOTFOUND);
}

// Which argument is for which parameter: the named ones come first, the others last to first.
void Arguments::place(const DISPPARAMS& given) {
    const std::size_t count = m_method.parameters.size();
    if (given.cArgs > count || given.cNamedArgs > given.cArgs) {
        throw Failure{DISP_E_BADPARAMCOUNT, 0};
    }
    if ((given.cArgs > 0 && given.rgvarg == nullptr) ||
        (given.cNamedArgs > 0 && given.rgdispidNamedArgs == nullptr)) {
        throw Failure{E_INVALIDARG, 0};
    }
    for (UINT i = 0; i < given.cArgs; ++i) {
        const bool named = i < given.cNamedArgs;
        const std::size_t position = named ? static_cast<std::size_t>(given.rgdispidNamedArgs[i])
                                           : std::size_t{given.cArgs} - 1 - i;
        if (position >= count || m_arguments[position].given != nullptr) {
            throw Failure{DISP_E_PARAMNOTFOUND, i};
        }
        m_arguments[position].given = &given.rgvarg[i];
        m_arguments[position].place = i;
    }
}

void Arguments::take(const DISPPARAMS& given) {
    place(given);
    const std::size_t count = m_method.parameters.size();
    std::size_t outputs = 0;
    std::size_t outputs_left_out = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (!m_method.parameters[i].is_output) continue;
        ++outputs;
        if (left_out(m_arguments[i])) ++outputs_left_out;
    }
    m_all_left_out = outputs > 1 && outputs_left_out == outputs;
    for (std::size_t i = 0; i < count; ++i) {
        Argument& argument = m_arguments[i];
        const auto [type, is_output] = m_method.parameters[i];
        if (left_out(argument) && !(is_output && (i + 1 == count || m_all_left_out))) {
            throw Failure{argument.given == nullptr && given.cNamedArgs == 0
                              ? DISP_E_BADPARAMCOUNT
                              : DISP_E_PARAMNOTOPTIONAL,
                          argument.place};
        }
        if (left_out(argument)) argument.given = nullptr;
        if (is_output) {
            prepare_output(argument, type);
        } else {
            convert_input(argument, type);
        }
    }
}

void Arguments::convert_input(Argument& argument, VARTYPE type) {
    VARIANTARG* given = variable_of(argument.given);
    if (given == nullptr) throw Failure{DISP_E_BADVARTYPE, argument.place};
    const auto given_type = static_cast<VARTYPE>(V_VT(given) & ~VT_BYREF);
    if (!is_input(given_type)) throw Failure{DISP_E_TYPEMISMATCH, argument.place};
    if ((V_VT(given) & VT_BYREF) != 0 && V_BYREF(given) == nullptr) {
        throw Failure{DISP_E_BADVARTYPE, argument.place};
    }

    const bool is_text = type == VT_LPSTR;
    VARIANT changed;
    VariantInit(&changed);
    const HRESULT result = from_host(changed, *given, is_text ? VARTYPE{VT_BSTR} : type, m_locale);
    if (result == E_OUTOFMEMORY) throw std::bad_alloc();
    if (FAILED(result)) throw Failure{result, argument.place};
    if (!is_text) {
        argument.value = changed;
        return;
    }
    const std::unique_ptr<wchar_t, decltype(&SysFreeString)> text(V_BSTR(&changed), &SysFreeString);
    argument.bytes = to_bytes({text.get(), SysStringLen(text.get())});
    V_VT(&argument.value) = VT_BYREF | VT_I1;
    V_BYREF(&argument.value) = argument.bytes.data();
}

void Arguments::prepare_output(Argument& argument, VARTYPE type) {
    if (argument.given != nullptr) {
        const VARIANTARG* variable = variable_of(argument.given);
        if (variable == nullptr) throw Failure{DISP_E_BADVARTYPE, argument.place};
        if ((V_VT(variable) & VT_BYREF) != 0) {
            const auto simple = static_cast<VARTYPE>(V_VT(variable) & ~VT_BYREF);
            if (simple_size(simple) == 0) throw Failure{DISP_E_TYPEMISMATCH, argument.place};
            if (V_BYREF(variable) == nullptr) throw Failure{DISP_E_BADVARTYPE, argument.place};
        }
    }
    VARIANT& output = argument.output;
    V_VT(&argument.value) = static_cast<VARTYPE>(VT_BYREF | type);
    if (type == VT_R8) {
        V_VT(&output) = VT_R8;
        V_R8(&output) = std::bit_cast<double>(unwritten_double);
    } else if (type == VT_BSTR) {
        V_VT(&output) = VT_BSTR;
        V_BSTR(&output) = nullptr;
    } else {
        V_VT(&output) = VT_I4;
        V_I4(&output) = unwritten_int;
    }
    V_BYREF(&argument.value) = &V_I8(&output);
}

HRESULT Arguments::call(IUnknown* object) {
    std::array<VARTYPE, most> types{};
    std::array<VARIANTARG*, most> values{};
    const std::size_t count = m_method.parameters.size();
    for (std::size_t i = 0; i < count; ++i) {
        types[i] = V_VT(&m_arguments[i].value);
        values[i] = &m_arguments[i].value;
    }
    VARIANT returned;
    VariantInit(&returned);
    const HRESULT result =
        DispCallFunc(object, static_cast<ULONG_PTR>(m_method.slot), CC_STDCALL, VT_ERROR,
                     static_cast<UINT>(count), types.data(), values.data(), &returned);
    return FAILED(result) ? result : V_ERROR(&returned);
}

// All outputs in order; what was not written is empty.
HRESULT Arguments::make_array(VARIANT& array) {
    std::array<VARIANT*, most> outputs{};
    ULONG count = 0;
    for (std::size_t i = 0; i < m_method.parameters.size(); ++i) {
        if (m_method.parameters[i].is_output) outputs[count++] = &m_arguments[i].output;
    }
    V_ARRAY(&array) = SafeArrayCreateVector(VT_VARIANT, 0, count);
    if (V_ARRAY(&array) == nullptr) return E_OUTOFMEMORY;
    V_VT(&array) = VT_ARRAY | VT_VARIANT;
    VARIANT* elements = nullptr;
    HRESULT result = SafeArrayAccessData(V_ARRAY(&array), reinterpret_cast<void**>(&elements));
    if (FAILED(result)) return result;
    for (ULONG i = 0; i < count && SUCCEEDED(result); ++i) {
        if (is_written(*outputs[i])) result = VariantCopy(&elements[i], outputs[i]);
    }
    SafeArrayUnaccessData(V_ARRAY(&array));
    if (FAILED(result)) VariantClear(&array);
    return result;
}

void Arguments::hand_back(VARIANT* result) {
    if (m_all_left_out) {
        const HRESULT made = result == nullptr ? S_OK : make_array(*result);
        if (FAILED(made)) throw Failure{made, 0};
        return;
    }
    std::optional<Failure> failure;
    for (std::size_t i = 0; i < m_method.parameters.size(); ++i) {
        Argument& argument = m_arguments[i];
        if (!m_method.parameters[i].is_output || !is_written(argument.output)) continue;
        HRESULT written = S_OK;
        if (argument.given == nullptr) {
            if (result != nullptr) written = write_any(*result, argument.output);
        } else if (V_VT(argument.given) == (VT_BYREF | VT_VARIANT)) {
            VARIANTARG* variable = variable_of(argument.given);
            written = (V_VT(variable) & VT_BYREF) != 0
                          ? write_simple(*variable, argument.output, m_locale)
                          : write_any(*variable, argument.output);
        } else if ((V_VT(argument.given) & VT_BYREF) != 0) {
            written = write_simple(*argument.given, argument.output, m_locale);
        }
        if (FAILED(written) && !failure) failure = Failure{written, argument.place};
    }
    if (failure) throw *failure;
}

}  // namespace morandel::automation
