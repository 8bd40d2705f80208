/* C, early bound, by the same header as C++:
   x86_64-w64-mingw32-gcc -I ../include/morandel example.c -lole32 -loleaut32 -luuid
   Texts are bytes of code page 936; what a BSTR parameter gives is the caller's to free. */

#define COBJMACROS
#include <initguid.h>

#include "automation/morandel_com.h"

#include <stdio.h>

static int calculate(IComExpress* calculator) {
    char price[] = "price", qty[] = "qty", total[] = "total", product[] = "price*qty", none[] = "";
    double value = 0.0;
    int status = 0;
    IComExpress_SetValue(calculator, 1, price, 12.5, none);
    IComExpress_SetValue(calculator, 1, qty, 3.0, none);
    IComExpress_SetValue(calculator, 0, total, 0.0, product);
    IComExpress_GetValue(calculator, total, &value);
    IComExpress_GetLastErrorNum(calculator, &status);
    if (status == 0) {
        BSTR message = NULL;
        IComExpress_GetErrMsg(calculator, &message);
        fprintf(stderr, "failed: %ls\n", message);
        SysFreeString(message);
        return 1;
    }
    printf("total = %g\n", value);
    return 0;
}

int main(void) {
    IComExpress* calculator = NULL;
    HRESULT created;
    int status = 1;
    CoInitialize(NULL);
    created = CoCreateInstance(&CLSID_ComExpress, NULL, CLSCTX_INPROC_SERVER, &IID_IComExpress,
                               (void**)&calculator);
    if (SUCCEEDED(created)) {
        status = calculate(calculator);
        IComExpress_Release(calculator);
    } else {
        fprintf(stderr, "the object cannot be created: 0x%08lX\n", (unsigned long)created);
    }
    CoUninitialize();
    return status;
}
