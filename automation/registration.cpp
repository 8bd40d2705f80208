#include "automation/registration.h"

#include <windows.h>

#include <oleauto.h>

#include <new>
#include <string>
#include <string_view>

#include "automation/module.h"
#include "automation/registrar.h"
#include "automation/type_information.h"
#include "morandel_com.h"

namespace morandel::automation {
namespace {

HRESULT last_error() {
    return HRESULT_FROM_WIN32(GetLastError());
}

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

class Key {
  public:
    Key(HKEY parent, const wchar_t* path, REGSAM rights) {
        expect(HRESULT_FROM_WIN32(static_cast<unsigned long>(
            RegCreateKeyExW(parent, path, 0, nullptr, 0, rights, nullptr, &m_handle, nullptr))));
    }
    ~Key() { RegCloseKey(m_handle); }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    [[nodiscard]] HKEY get() const { return m_handle; }

  private:
    HKEY m_handle = nullptr;
};

// As long as it lives, the classes root is the user's own.
class UserClasses {
  public:
    UserClasses() : m_classes(HKEY_CURRENT_USER, L"Software\\Classes", KEY_ALL_ACCESS) {
        expect(HRESULT_FROM_WIN32(
            static_cast<unsigned long>(RegOverridePredefKey(HKEY_CLASSES_ROOT, m_classes.get()))));
    }
    ~UserClasses() { RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr); }
    UserClasses(const UserClasses&) = delete;
    UserClasses& operator=(const UserClasses&) = delete;

  private:
    Key m_classes;
};

// In a script, the quote that ends a text is written twice to stand for itself.
std::wstring quoted(std::wstring_view text) {
    std::wstring result;
    for (const wchar_t c : text) result.append(c == L'\'' ? 2 : 1, c);
    return result;
}

HRESULT run_script(const ClassEntry& entry, bool installing) {
    const Library library(L"atl.dll");
    Pointer<IClassFactory> factory;
    expect(library.find<decltype(DllGetClassObject)>("DllGetClassObject")(
        registrar_class, IID_IClassFactory, factory.fill_untyped()));
    Pointer<Registrar> registrar;
    expect(factory->CreateInstance(nullptr, registrar_interface, registrar.fill_untyped()));
    const auto path = module_path();
    expect(registrar->AddReplacement(L"MODULE", quoted(path.data()).c_str()));
    return installing
               ? registrar->ResourceRegister(path.data(), entry.registry_script, L"REGISTRY")
               : registrar->ResourceUnregister(path.data(), entry.registry_script, L"REGISTRY");
}

std::wstring key_of(const wchar_t* parent, const GUID& id) {
    wchar_t text[64];
    StringFromGUID2(id, text, 64);
    return std::wstring(parent) + L'\\' + text;
}

// No failure where there is none.
HRESULT remove_key(const std::wstring& path) {
    const LSTATUS status = RegDeleteTreeW(HKEY_CLASSES_ROOT, path.c_str());
    if (status == ERROR_FILE_NOT_FOUND) return S_OK;
    if (status != ERROR_SUCCESS) return HRESULT_FROM_WIN32(static_cast<unsigned long>(status));
    const LSTATUS left = RegDeleteKeyW(HKEY_CLASSES_ROOT, path.c_str());
    return left == ERROR_SUCCESS || left == ERROR_FILE_NOT_FOUND
               ? S_OK
               : HRESULT_FROM_WIN32(static_cast<unsigned long>(left));
}

HRESULT register_library() {
    auto path = module_path();
    Pointer<ITypeLib> library;
    const HRESULT result = LoadTypeLibEx(path.data(), REGKIND_NONE, library.fill());
    if (FAILED(result)) return result;
    const HRESULT registered = RegisterTypeLib(library.get(), path.data(), nullptr);
    if (FAILED(registered)) return registered;
    // Some platforms answer that all went well where the interface could not be written.
    HKEY key = nullptr;
    const LSTATUS status = RegOpenKeyExW(
        HKEY_CLASSES_ROOT, key_of(L"Interface", IID_IComExpress).c_str(), 0, KEY_READ, &key);
    if (status != ERROR_SUCCESS) return TYPE_E_REGISTRYACCESS;
    RegCloseKey(key);
    return S_OK;
}

constexpr HRESULT not_found = HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);

HRESULT unregister_library() {
    const HRESULT result = UnRegisterTypeLib(LIBID_MORANDELLib, 1, 0, LOCALE_NEUTRAL,
                                             sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32);
    // What platforms answer for one that is not registered.
    return result == TYPE_E_REGISTRYACCESS || result == E_INVALIDARG ? S_OK : result;
}

template <class Body>
HRESULT guarded(const Body& body) {
    try {
        return body();
    } catch (const ComError& error) {
        return error.result;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

HRESULT install() {
    for (const ClassEntry& entry : this_module().classes()) {
        const HRESULT result = guarded([&] { return run_script(entry, true); });
        if (FAILED(result)) return result;
    }
    return guarded(register_library);
}

HRESULT remove() {
    HRESULT first = S_OK;
    const auto keep_first = [&](HRESULT result) {
        // What is gone already is no failure.
        if (SUCCEEDED(first) && result != not_found) first = result;
    };
    for (const ClassEntry& entry : this_module().classes()) {
        keep_first(guarded([&] { return run_script(entry, false); }));
        // Some registrars leave the keys of values behind.
        keep_first(guarded([&] { return remove_key(key_of(L"CLSID", entry.id)); }));
    }
    keep_first(guarded(unregister_library));
    // A library that was registered by half is none to the platform.
    keep_first(guarded([] { return remove_key(key_of(L"Interface", IID_IComExpress)); }));
    return first;
}

template <class Body>
HRESULT in_scope(Scope scope, const Body& body) {
    return guarded([&] {
        if (scope == Scope::machine) return body();
        const UserClasses classes;
        return body();
    });
}

}  // namespace

HRESULT register_server(Scope scope) {
    return in_scope(scope, [] {
        const HRESULT result = install();
        if (FAILED(result)) remove();
        return result;
    });
}

HRESULT unregister_server(Scope scope) {
    return in_scope(scope, remove);
}

}  // namespace morandel::automation
