// Early bound, by the header made from the interface description:
// x86_64-w64-mingw32-g++-posix -static -I ../include/morandel example.cpp -lole32 -loleaut32 -luuid
// Texts are bytes of code page 936; what a BSTR parameter gives is the caller's to free.

#include <initguid.h>

#include "automation/morandel_com.h"

#include <cstdio>

namespace {

int calculate(IComExpress& calculator) {
    char price[] = "price", qty[] = "qty", total[] = "total", product[] = "price*qty", none[] = "";
    calculator.SetValue(1, price, 12.5, none);
    calculator.SetValue(1, qty, 3.0, none);
    calculator.SetValue(0, total, 0.0, product);
    double value = 0.0;
    int status = 0;
    calculator.GetValue(total, &value);
    calculator.GetLastErrorNum(&status);
    if (status == 0) {
        BSTR message = nullptr;
        calculator.GetErrMsg(&message);
        std::fprintf(stderr, "failed: %ls\n", message);
        SysFreeString(message);
        return 1;
    }
    std::printf("total = %g\n", value);
    return 0;
}

}  // namespace

int main() {
    CoInitialize(nullptr);
    IComExpress* calculator = nullptr;
    const HRESULT created =
        CoCreateInstance(CLSID_ComExpress, nullptr, CLSCTX_INPROC_SERVER, IID_IComExpress,
                         reinterpret_cast<void**>(&calculator));
    int status = 1;
    if (SUCCEEDED(created)) {
        status = calculate(*calculator);
        calculator->Release();
    } else {
        std::fprintf(stderr, "the object cannot be created: 0x%08lX\n",
                     static_cast<unsigned long>(created));
    }
    CoUninitialize();
    return status;
}
