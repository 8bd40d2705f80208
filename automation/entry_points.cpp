// The library's application object and its entry points.

#include <windows.h>

#include <olectl.h>

#include <cwchar>

#include "automation/com_express.h"
#include "automation/module.h"
#include "automation/registration.h"
#include "automation/resource.h"
#include "automation/type_information.h"

namespace morandel::automation {
namespace {

constexpr ClassEntry class_table[] = {
    {CLSID_ComExpress, IDR_COMEXPRESS, CComExpress::create},
};

// Starts the module when the library is loaded and ends it when that goes.
class CMorandelApp {
  public:
    void InitInstance(HINSTANCE instance) {
        this_module().init(class_table, instance);
        DisableThreadLibraryCalls(instance);
    }
    // A thread that has computed holds the library until it ends, by MinGW's runtime, which then
    // unloads it from within: the thread would wait for itself. So what gives objects stays.
    void StayLoaded() {
        HMODULE library = nullptr;
        GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                           reinterpret_cast<LPCWSTR>(&class_table), &library);
    }
    void ExitInstance() {
        this_module().terminate();
        forget_type_information();
    }
};

CMorandelApp theApp;

}  // namespace
}  // namespace morandel::automation

using namespace morandel::automation;

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID process_ends) {
    if (reason == DLL_PROCESS_ATTACH) theApp.InitInstance(instance);
    // When the process ends, the libraries that hold the rest may be gone already.
    if (reason == DLL_PROCESS_DETACH && process_ends == nullptr) theApp.ExitInstance();
    return TRUE;
}

STDAPI DllGetClassObject(REFCLSID id, REFIID iid, LPVOID* object) {
    theApp.StayLoaded();
    return this_module().get_class_object(id, iid, object);
}

STDAPI DllCanUnloadNow() { return this_module().locks() == 0 ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() { return register_server(Scope::machine); }

STDAPI DllUnregisterServer() { return unregister_server(Scope::machine); }

// "user" is for the current user alone; nothing is as DllRegisterServer and DllUnregisterServer.
STDAPI DllInstall(BOOL install, LPCWSTR scope_name) {
    Scope scope = Scope::machine;
    if (scope_name != nullptr && *scope_name != L'\0') {
        if (_wcsicmp(scope_name, L"user") != 0) return E_INVALIDARG;
        scope = Scope::user;
    }
    return install != FALSE ? register_server(scope) : unregister_server(scope);
}
