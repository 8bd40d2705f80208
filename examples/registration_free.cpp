// Creates the object without any registration: registration_free MANIFEST, where Morandel10.dll
// lies beside Morandel10.manifest. A program can instead name the assembly Morandel10 in its own
// manifest, with both files in its folder.

#include <initguid.h>

#include "automation/morandel_com.h"

#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    ACTCTXA context{};
    context.cbSize = sizeof context;
    context.lpSource = argv[1];
    const HANDLE activation = CreateActCtxA(&context);
    ULONG_PTR cookie = 0;
    if (activation == INVALID_HANDLE_VALUE || ActivateActCtx(activation, &cookie) == 0) {
        std::fprintf(stderr, "the manifest is refused: %lu\n", GetLastError());
        return 1;
    }
    CoInitialize(nullptr);
    IComExpress* calculator = nullptr;
    const HRESULT created =
        CoCreateInstance(CLSID_ComExpress, nullptr, CLSCTX_INPROC_SERVER, IID_IComExpress,
                         reinterpret_cast<void**>(&calculator));
    if (FAILED(created)) {
        std::fprintf(stderr, "the object cannot be created: 0x%08lX\n",
                     static_cast<unsigned long>(created));
        return 1;
    }
    char name[] = "answer", formula[] = "6*7";
    double value = 0.0;
    calculator->SetValue(0, name, 0.0, formula);
    calculator->GetValue(name, &value);
    std::printf("%s = %g\n", name, value);
    calculator->Release();
    CoUninitialize();
    return 0;
}
