#include "automation/registrar.h"

#include <string>
#include <string_view>

#include "automation/pointer.h"
#include "automation/type_information.h"

namespace morandel::automation {
namespace {

HRESULT last_error() { return HRESULT_FROM_WIN32(GetLastError()); }

class Library {
  public:
    explicit Library(const wchar_t* name)
        : m_handle(LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32)) {
        if (m_handle == nullptr) expect(last_error());
    }
    ~Library() { FreeLibrary(m_handle); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    template <class Function>
    Function* find(const char* name) const {
        const FARPROC found = GetProcAddress(m_handle, name);
        if (found == nullptr) expect(last_error());
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(found));
    }

  private:
    HMODULE m_handle;
};

// In a script, the quote that ends a text is written twice to stand for itself.
std::wstring quoted(std::wstring_view text) {
    std::wstring result;
    for (const wchar_t c : text) result.append(c == L'\'' ? 2 : 1, c);
    return result;
}

}  // namespace

HRESULT run_script(UINT script, ScriptMode mode) {
    const Library library(L"atl.dll");
    Pointer<IClassFactory> factory;
    expect(library.find<decltype(DllGetClassObject)>("DllGetClassObject")(
        registrar_class, IID_IClassFactory, factory.fill_untyped()));
    Pointer<Registrar> registrar;
    expect(factory->CreateInstance(nullptr, registrar_interface, registrar.fill_untyped()));
    const auto path = module_path();
    expect(registrar->AddReplacement(L"MODULE", quoted(path.data()).c_str()));
    return mode == ScriptMode::write
               ? registrar->ResourceRegister(path.data(), script, L"REGISTRY")
               : registrar->ResourceUnregister(path.data(), script, L"REGISTRY");
}

}  // namespace morandel::automation
