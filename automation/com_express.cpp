#include "automation/com_express.h"

#include <new>

#include "automation/code_page.h"
#include "automation/module.h"
#include "base/floating_point.h"
#include "engine/turn.h"

namespace morandel::automation {
namespace {

template <class Type>
void store(Type* where, Type value) {
    if (where != nullptr) *where = value;
}

void store(BSTR* where, const std::string& bytes) {
    if (where != nullptr) *where = to_bstr(bytes);
}

}  // namespace

HRESULT CComExpress::create(IUnknown* outer, REFIID iid, void** object) {
    CComExpress* made = nullptr;
    try {
        const Turn turn;
        made = new CComExpress(outer);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
    const HRESULT result = made->m_inner.QueryInterface(iid, object);
    made->m_inner.Release();
    return result;
}

CComExpress::CComExpress(IUnknown* outer) : m_outer(outer != nullptr ? outer : &m_inner) {
    this_module().lock();
}

CComExpress::~CComExpress() { this_module().unlock(); }

STDMETHODIMP CComExpress::Inner::QueryInterface(REFIID iid, void** object) {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (IsEqualIID(iid, IID_IUnknown)) {
        *object = static_cast<IUnknown*>(this);
        AddRef();
        return S_OK;
    }
    if (!IsEqualIID(iid, IID_IDispatch) && !IsEqualIID(iid, IID_IComExpress)) return E_NOINTERFACE;
    *object = static_cast<IComExpress*>(&m_object);
    m_object.AddRef();
    return S_OK;
}

// Apartment threading: one thread counts, so the count is a plain one.
STDMETHODIMP_(ULONG) CComExpress::Inner::AddRef() { return ++m_object.m_references; }

STDMETHODIMP_(ULONG) CComExpress::Inner::Release() {
    const ULONG left = --m_object.m_references;
    if (left == 0) delete &m_object;
    return left;
}

STDMETHODIMP CComExpress::QueryInterface(REFIID iid, void** object) {
    return m_outer->QueryInterface(iid, object);
}

STDMETHODIMP_(ULONG) CComExpress::AddRef() { return m_outer->AddRef(); }

STDMETHODIMP_(ULONG) CComExpress::Release() { return m_outer->Release(); }

// No exception may cross the frames of Invoke's caller, so under Invoke it waits until these are
// left. On 32 bits numbers pass through the x87, where a host's traps would meet them.
template <class Body>
HRESULT CComExpress::run(const Body& body) {
    const Turn turn;
    const DefaultFloatingPoint environment;
    if (!m_invoking) {
        body();
        return S_OK;
    }
    try {
        body();
    } catch (...) {
        m_thrown = std::current_exception();
    }
    return S_OK;
}

STDMETHODIMP CComExpress::SetValue(int iVarType, LPSTR szVarName, double VarValue,
                                   LPSTR szExpress) {
    return run([&] { m_nLastError = m_varList.Append(iVarType, szVarName, VarValue, szExpress); });
}

STDMETHODIMP CComExpress::GetValue(LPSTR szVarName, double* pVarValue) {
    return run([&] {
        m_nLastError = m_varList.Cal() == 0 ? 0 : 1;
        if (m_nLastError == 1) {
            store(pVarValue, m_varList.FindByNameAndGetValue(szVarName));
        } else {
            store(pVarValue, 0.0);
            m_strErrMsg = m_varList.m_strError;
        }
    });
}

STDMETHODIMP CComExpress::Clear() {
    return run([&] { m_varList.Free(); });
}

STDMETHODIMP CComExpress::GetLastErrorNum(int* pErrNum) {
    return run([&] { store(pErrNum, m_nLastError); });
}

STDMETHODIMP CComExpress::GetVariableCount(int* count) {
    return run([&] { store(count, m_express.GetVariableNum()); });
}

STDMETHODIMP CComExpress::ValidateExpression(LPSTR text, int* ok) {
    return run([&] {
        const int accepted = m_express.SetExpression(text);
        if (accepted == 0) m_strErrMsg = m_express.m_ErrorMessage;
        store(ok, accepted == 0 ? 0 : 1);
    });
}

STDMETHODIMP CComExpress::get_Variable(int index, BSTR* pVal) {
    return run([&] {
        int type = 0;
        store(pVal, m_express.GetVariable(index, &type));
    });
}

STDMETHODIMP CComExpress::GetErrMsg(BSTR* ErrMsg) {
    return run([&] { store(ErrMsg, m_strErrMsg); });
}

STDMETHODIMP CComExpress::SetStringValue(int iVarType, LPSTR szVarName, LPSTR szVarvalue,
                                         LPSTR szExpress) {
    return run(
        [&] { m_nLastError = m_varList.AppendString(iVarType, szVarName, szVarvalue, szExpress); });
}

// Of the last calculation: it calculates nothing itself.
STDMETHODIMP CComExpress::GetResultType(int* TYPE) {
    return run([&] {
        const int type = m_varList.m_nResultType;
        if (type >= 0 && type <= 2) store(TYPE, type);
    });
}

STDMETHODIMP CComExpress::get_Variable_Type(int Index, int* TYPE) {
    return run([&] { m_express.GetVariable(Index, TYPE); });
}

// Deliberate: relies on the last GetValue, or gives what SetStringValue stored.
STDMETHODIMP CComExpress::GetStringValue(LPSTR szVarName, BSTR* szResult) {
    return run([&] {
        if (m_nLastError != 0) {
            store(szResult, m_varList.FindByNameAndGetStrValue(szVarName));
        } else {
            store(szResult, std::string());
            m_strErrMsg = m_varList.m_strError;
        }
    });
}

STDMETHODIMP CComExpress::ExpressionCheck(LPSTR lpExpression, int* pResult, int* Num) {
    return run([&] {
        m_check.Reset();
        // Deliberate: for the evaluator that it makes, which empties the pending numbers.
        m_varList.GetExpressionError(nullptr, nullptr);
        if (!m_check.CheckExpression(lpExpression)) {
            store(pResult, 1);
            return;
        }
        // Deliberate: the evaluator's message, not the checker's.
        m_strErrMsg = m_express.m_ErrorMessage;
        store(Num, static_cast<int>(m_check.m_errors.size()));
        store(pResult, 0);
    });
}

// Deliberate: always the first fault, and nothing is removed.
STDMETHODIMP CComExpress::GetExpressionError(int* Index, int* errornum, int* position, int* Para,
                                             BSTR* Name) {
    return run([&] {
        const CheckexpressionError& fault = m_check.GetExpressionError(0);
        store(errornum, fault.nType);
        store(position, fault.nPosition);
        store(Name, fault.strName);
        store(Para, fault.nIndex);
        store(Index, static_cast<int>(m_check.m_errors.size()) - 1);
    });
}

}  // namespace morandel::automation
