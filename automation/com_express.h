// The automation object, in the order of its interface. It maps each method onto the variable
// list, the evaluator and the checker that it holds.

#pragma once

#include <exception>
#include <string>

#include <morandel.h>
#include "morandel_com.h"

namespace morandel::automation {

class CComExpress final : public IComExpress {
  public:
    // For the class factory; outer is null unless the object becomes part of an aggregate.
    static HRESULT create(IUnknown* outer, REFIID iid, void** object);

    // IUnknown, of the outer object if there is one
    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;

    // IDispatch
    STDMETHODIMP GetTypeInfoCount(UINT* count) override;
    STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** information) override;
    STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                               DISPID* ids) override;
    // Where a call leaves out the last parameter and that is an output, its value is the result;
    // where it leaves out several outputs, which must be all, an array of them in order is.
    // What a method throws comes out as DISP_E_EXCEPTION.
    STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters,
                        VARIANT* result, EXCEPINFO* exception, UINT* argument) override;

    // IComExpress; all give S_OK. Called through the interface itself, a method lets std::bad_alloc
    // out, and GetExpressionError std::invalid_argument. What a null pointer asks for is not
    // written.
    STDMETHODIMP SetValue(int iVarType, LPSTR szVarName, double VarValue, LPSTR szExpress) override;
    STDMETHODIMP GetValue(LPSTR szVarName, double* pVarValue) override;
    STDMETHODIMP Clear() override;
    STDMETHODIMP GetLastErrorNum(int* pErrNum) override;
    STDMETHODIMP GetVariableCount(int* count) override;
    STDMETHODIMP ValidateExpression(LPSTR text, int* ok) override;
    STDMETHODIMP get_Variable(int index, BSTR* pVal) override;
    STDMETHODIMP GetErrMsg(BSTR* ErrMsg) override;
    STDMETHODIMP SetStringValue(int iVarType, LPSTR szVarName, LPSTR szVarvalue,
                                LPSTR szExpress) override;
    STDMETHODIMP GetResultType(int* TYPE) override;
    STDMETHODIMP get_Variable_Type(int Index, int* TYPE) override;
    STDMETHODIMP GetStringValue(LPSTR szVarName, BSTR* szResult) override;
    STDMETHODIMP ExpressionCheck(LPSTR lpExpression, int* pResult, int* Num) override;
    STDMETHODIMP GetExpressionError(int* Index, int* errornum, int* position, int* Para,
                                    BSTR* Name) override;

  private:
    // The object's own IUnknown, which an outer object holds.
    class Inner final : public IUnknown {
      public:
        explicit Inner(CComExpress& object) : m_object(object) {}
        STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
        STDMETHODIMP_(ULONG) AddRef() override;
        STDMETHODIMP_(ULONG) Release() override;

      private:
        CComExpress& m_object;
    };

    explicit CComExpress(IUnknown* outer);
    ~CComExpress();

    template <class Body>
    HRESULT run(const Body& body);
    void invoke(DISPID id, LCID locale, DISPPARAMS& parameters, VARIANT* result);

    ULONG m_references = 1;
    int m_nLastError = 0;
    CVariableExpressList m_varList;
    std::string m_strErrMsg;
    CExpress m_express;
    CExpressionCheck m_check;

    Inner m_inner{*this};
    IUnknown* m_outer;  // not counted: the outer object lives longer
    bool m_invoking = false;
    std::exception_ptr m_thrown;  // by a method under Invoke
};

}  // namespace morandel::automation
