#include "automation/registration.h"

#include <windows.h>

#include <oleauto.h>

#include <new>
#include <optional>
#include <string>

#include "automation/module.h"
#include "automation/registrar.h"
#include "automation/registry.h"
#include "automation/type_information.h"
#include "morandel_com.h"

namespace morandel::automation {
namespace {

std::wstring text_of(const GUID& id) {
    wchar_t text[64];
    StringFromGUID2(id, text, 64);
    return text;
}

const std::wstring& class_key() {
    static const std::wstring key = L"CLSID\\" + text_of(CLSID_ComExpress);
    return key;
}

const std::wstring& interface_key() {
    static const std::wstring key = L"Interface\\" + text_of(IID_IComExpress);
    return key;
}

const std::wstring& library_key() {
    static const std::wstring key = L"TypeLib\\" + text_of(LIBID_MORANDELLib);
    return key;
}

constexpr const wchar_t* version = L"\\1.0";
constexpr const wchar_t* own_platform = sizeof(void*) == 8 ? L"\\0\\win64" : L"\\0\\win32";
constexpr const wchar_t* program_keys[] = {L"Morandel10.ComExpress", L"Morandel10.ComExpress.1"};
// What calls cross apartments by: the marshaler that reads type libraries.
constexpr const wchar_t* type_library_marshaler = L"{00020424-0000-0000-C000-000000000046}";

// While it lives, the classes root of this process is another.
class OtherClassesRoot {
  public:
    explicit OtherClassesRoot(const ClassesRoot& root) {
        const std::wstring path = root.prefix.substr(0, root.prefix.size() - 1);
        expect(m_classes.create(root.key, path, KEY_ALL_ACCESS));
        expect(registry_result(RegOverridePredefKey(HKEY_CLASSES_ROOT, m_classes.get())));
    }
    ~OtherClassesRoot() { RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr); }
    OtherClassesRoot(const OtherClassesRoot&) = delete;
    OtherClassesRoot& operator=(const OtherClassesRoot&) = delete;

  private:
    Key m_classes;
};

ClassesRoot root_of(Scope scope) {
    ClassesRoot user{HKEY_CURRENT_USER, L"Software\\Classes\\"};
    if (scope == Scope::user) return user;
    // HKEY_CLASSES_ROOT shows, and changes, what the user has before what the machine has. Where
    // the user has nothing of this, it is the machine's, or what a host put in its place.
    bool user_has_it = user.has(library_key(), View::own);
    for (const View view : {View::own, View::other}) {
        user_has_it = user_has_it || user.has(class_key(), view) || user.has(interface_key(), view);
    }
    for (const wchar_t* key : program_keys) user_has_it = user_has_it || user.has(key, View::own);
    if (!user_has_it) return {HKEY_CLASSES_ROOT, L""};
    return {HKEY_LOCAL_MACHINE, L"Software\\Classes\\"};
}

class Server {
  public:
    explicit Server(Scope scope) : m_root(root_of(scope)) {
        if (m_root.key != HKEY_CLASSES_ROOT) m_override.emplace(m_root);
    }

    [[nodiscard]] HRESULT install() const;
    HRESULT remove() const;

  private:
    [[nodiscard]] HRESULT install_library() const;
    template <class KeepFirst>
    void remove_shared(const KeepFirst& keep_first) const;

    ClassesRoot m_root;
    std::optional<OtherClassesRoot> m_override;
};

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

HRESULT Server::install() const {
    for (const ClassEntry& entry : this_module().classes()) {
        const HRESULT result =
            guarded([&] { return run_script(entry.registry_script, ScriptMode::write); });
        if (FAILED(result)) return result;
    }
    return guarded([&] { return install_library(); });
}

// The platform's own function writes outside the user's branch where it should not.
HRESULT Server::install_library() const {
    const std::wstring path = module_path().data();
    const std::wstring folder = path.substr(0, path.find_last_of(L'\\'));
    Pointer<ITypeLib> library;
    expect(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.fill()));
    BSTR help = nullptr;
    expect(library->GetDocumentation(-1, nullptr, &help, nullptr, nullptr));
    const std::wstring title(help, SysStringLen(help));
    SysFreeString(help);

    const struct {
        View view;
        std::wstring key;
        const wchar_t* name;
        std::wstring value;
    } values[] = {
        {View::own, library_key() + version, nullptr, title},
        {View::own, library_key() + version + L"\\FLAGS", nullptr, L"0"},
        {View::own, library_key() + version + L"\\HELPDIR", nullptr, folder},
        {View::own, library_key() + version + own_platform, nullptr, path},
        {View::own, interface_key(), nullptr, L"IComExpress"},
        {View::own, interface_key() + L"\\ProxyStubClsid32", nullptr, type_library_marshaler},
        {View::own, interface_key() + L"\\TypeLib", nullptr, text_of(LIBID_MORANDELLib)},
        {View::own, interface_key() + L"\\TypeLib", L"Version", L"1.0"},
        {View::other, interface_key(), nullptr, L"IComExpress"},
        {View::other, interface_key() + L"\\ProxyStubClsid32", nullptr, type_library_marshaler},
        {View::other, interface_key() + L"\\TypeLib", nullptr, text_of(LIBID_MORANDELLib)},
        {View::other, interface_key() + L"\\TypeLib", L"Version", L"1.0"},
    };
    for (const auto& [view, key, name, value] : values) {
        expect(m_root.write(key, view, name, value));
    }
    return S_OK;
}

// What serves both kinds of library goes with the last of them, wherever their files are by now.
template <class KeepFirst>
void Server::remove_shared(const KeepFirst& keep_first) const {
    for (const ClassEntry& entry : this_module().classes()) {
        keep_first(guarded([&] { return run_script(entry.registry_script, ScriptMode::remove); }));
    }
    for (const wchar_t* key : program_keys) keep_first(m_root.remove(key, View::own));
    for (const View view : {View::own, View::other}) {
        keep_first(m_root.remove(interface_key(), view));
    }
    keep_first(m_root.remove(library_key() + version, View::own));
    keep_first(m_root.remove_empty(library_key(), View::own));
}

HRESULT Server::remove() const {
    HRESULT first = S_OK;
    const auto keep_first = [&](HRESULT result) {
        // What is gone already is no failure.
        if (SUCCEEDED(first) && result != registry_result(ERROR_FILE_NOT_FOUND)) first = result;
    };
    keep_first(m_root.remove(class_key(), View::own));
    keep_first(m_root.remove(library_key() + version + own_platform, View::own));
    if (!m_root.has(class_key() + L"\\InprocServer32", View::other)) remove_shared(keep_first);
    return first;
}

}  // namespace

HRESULT register_server(Scope scope) {
    return guarded([&] {
        const Server server(scope);
        const HRESULT result = server.install();
        if (FAILED(result)) server.remove();
        return result;
    });
}

HRESULT unregister_server(Scope scope) {
    return guarded([&] { return Server(scope).remove(); });
}

}  // namespace morandel::automation
