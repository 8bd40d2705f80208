// The IDispatch side of the automation object. The type library serves it; only Invoke's arguments
// are converted here, since ITypeInfo::Invoke takes neither LPSTR parameters nor plain script
// variables for outputs.

#include <windows.h>

#include <oleauto.h>

#include <new>
#include <stdexcept>
#include <utility>

#include "automation/arguments.h"
#include "automation/code_page.h"
#include "automation/com_express.h"
#include "automation/type_information.h"

namespace morandel::automation {
namespace {

constexpr const wchar_t* source_name = L"Morandel10.ComExpress";

HRESULT report(EXCEPINFO* exception, HRESULT code, const char* what) {
    if (exception == nullptr) return DISP_E_EXCEPTION;
    *exception = {};
    exception->scode = code;
    exception->bstrSource = SysAllocString(source_name);
    try {
        exception->bstrDescription = to_bstr(what);
    } catch (const std::bad_alloc&) {
        // Then there is a code without words.
    }
    return DISP_E_EXCEPTION;
}

// Turns what body throws into what IDispatch gives back.
template <class Body>
HRESULT guarded(EXCEPINFO* exception, UINT* argument, const Body& body) {
    try {
        body();
        return S_OK;
    } catch (const Arguments::Failure& failure) {
        if (argument != nullptr) *argument = failure.argument;
        return failure.result;
    } catch (const ComError& error) {
        return error.result;
    } catch (const std::bad_alloc&) {
        return report(exception, E_OUTOFMEMORY, "out of memory");
    } catch (const std::invalid_argument& problem) {
        return report(exception, E_INVALIDARG, problem.what());
    } catch (const EncodingError& problem) {
        return report(exception, E_INVALIDARG, problem.what());
    } catch (const std::exception& problem) {
        return report(exception, E_FAIL, problem.what());
    }
}

}  // namespace

STDMETHODIMP CComExpress::GetTypeInfoCount(UINT* count) {
    if (count == nullptr) return E_POINTER;
    *count = 1;
    return S_OK;
}

STDMETHODIMP CComExpress::GetTypeInfo(UINT index, LCID /*locale*/, ITypeInfo** information) {
    if (information == nullptr) return E_POINTER;
    *information = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    return guarded(nullptr, nullptr, [&] {
        *information = type_information()->dispatch.get();
        (*information)->AddRef();
    });
}

STDMETHODIMP CComExpress::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID /*locale*/,
                                        DISPID* ids) {
    if (!IsEqualIID(iid, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
    if (names == nullptr || ids == nullptr || count == 0) return E_INVALIDARG;
    return guarded(nullptr, nullptr,
                   [&] { expect(type_information()->dispatch->GetIDsOfNames(names, count, ids)); });
}

STDMETHODIMP CComExpress::Invoke(DISPID id, REFIID iid, LCID locale, WORD flags,
                                 DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                 UINT* argument) {
    if (!IsEqualIID(iid, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
    if ((flags & DISPATCH_METHOD) == 0) return DISP_E_MEMBERNOTFOUND;
    if (parameters == nullptr) return E_INVALIDARG;
    if (result != nullptr) VariantInit(result);
    return guarded(exception, argument, [&] { invoke(id, locale, *parameters, result); });
}

void CComExpress::invoke(DISPID id, LCID locale, DISPPARAMS& parameters, VARIANT* result) {
    const auto information = type_information();
    const Method* method = information->find(id);
    if (method == nullptr) throw ComError{DISP_E_MEMBERNOTFOUND};
    Arguments arguments(*method, locale);
    arguments.take(parameters);

    m_invoking = true;
    const HRESULT called = arguments.call(static_cast<IComExpress*>(this));
    m_invoking = false;
    if (m_thrown) std::rethrow_exception(std::exchange(m_thrown, nullptr));
    expect(called);
    arguments.hand_back(result);
}

}  // namespace morandel::automation
