// Late bound, as scripts are: nothing of the library is needed to compile it.
// x86_64-w64-mingw32-g++-posix -static late_bound.cpp -lole32 -loleaut32 -luuid

#include <windows.h>

#include <oleauto.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

class Value : public VARIANT {
  public:
    Value() { VariantInit(this); }
    explicit Value(double number) : Value() {
        vt = VT_R8;
        dblVal = number;
    }
    explicit Value(const wchar_t* text) : Value() {
        vt = VT_BSTR;
        bstrVal = SysAllocString(text);
    }
    Value(Value&& other) noexcept : VARIANT(other) { VariantInit(&other); }
    Value& operator=(Value&&) = delete;
    ~Value() { VariantClear(this); }
};

class Calculator {
  public:
    Calculator() {
        CLSID id{};
        created = CLSIDFromProgID(L"Morandel10.ComExpress", &id);
        if (SUCCEEDED(created)) {
            created = CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                       reinterpret_cast<void**>(&m_object));
        }
    }
    ~Calculator() {
        if (m_object != nullptr) m_object->Release();
    }
    Calculator(const Calculator&) = delete;
    Calculator& operator=(const Calculator&) = delete;

    // An output that is left out at the end is the result.
    template <class... Arguments>
    Value call(const wchar_t* method, Arguments... arguments) {
        Value given[sizeof...(arguments) + 1] = {Value(arguments)..., Value()};
        std::reverse(static_cast<VARIANT*>(given),
                     static_cast<VARIANT*>(given) + sizeof...(arguments));
        LPOLESTR name = const_cast<LPOLESTR>(method);
        DISPID id = DISPID_UNKNOWN;
        Value result;
        m_object->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
        DISPPARAMS parameters{given, nullptr, sizeof...(arguments), 0};
        m_object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, &result,
                         nullptr, nullptr);
        return result;
    }

    HRESULT created = E_FAIL;

  private:
    IDispatch* m_object = nullptr;
};

int calculate() {
    Calculator calculator;
    if (FAILED(calculator.created)) {
        std::fprintf(stderr, "the object cannot be created: 0x%08lX\n",
                     static_cast<unsigned long>(calculator.created));
        return 1;
    }
    calculator.call(L"SetValue", 1.0, L"price", 12.5, L"");
    calculator.call(L"SetValue", 1.0, L"qty", 3.0, L"");
    calculator.call(L"SetValue", 0.0, L"total", 0.0, L"price*qty");
    const Value total = calculator.call(L"GetValue", L"total");
    const Value status = calculator.call(L"GetLastErrorNum");
    if (status.lVal == 0) {
        const Value message = calculator.call(L"GetErrMsg");
        std::fprintf(stderr, "failed: %ls\n", message.bstrVal);
        return 1;
    }
    std::printf("total = %g\n", total.dblVal);
    return 0;
}

}  // namespace

int main() {
    CoInitialize(nullptr);
    const int status = calculate();
    CoUninitialize();
    return status;
}
