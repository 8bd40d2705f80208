// Prints what the registry of this Windows holds of the library: a line for each value below the
// keys of the library, in the machine's and the user's classes and in both views. An argument names
// a tree of the machine or of the user instead, as HKLM\Software\Something.

#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

class Key {
  public:
    Key(HKEY parent, const std::wstring& path) {
        if (RegOpenKeyExW(parent, path.c_str(), 0, KEY_READ | KEY_WOW64_64KEY, &m_handle) !=
            ERROR_SUCCESS) {
            m_handle = nullptr;
        }
    }
    ~Key() {
        if (m_handle != nullptr) RegCloseKey(m_handle);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    explicit operator bool() const { return m_handle != nullptr; }
    [[nodiscard]] HKEY get() const { return m_handle; }

  private:
    HKEY m_handle = nullptr;
};

void print(const std::wstring& text) {
    const int room =
        WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(room), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, bytes.data(), room, nullptr, nullptr);
    std::fputs(bytes.c_str(), stdout);
}

void print_values(const Key& key, const std::wstring& label) {
    constexpr DWORD most = 16'384;
    std::vector<wchar_t> name(most);
    std::vector<BYTE> data(1'048'576);
    for (DWORD i = 0;; ++i) {
        DWORD name_size = most;
        auto data_size = static_cast<DWORD>(data.size() - 2);
        DWORD type = 0;
        if (RegEnumValueW(key.get(), i, name.data(), &name_size, nullptr, &type, data.data(),
                          &data_size) != ERROR_SUCCESS) {
            return;
        }
        data[data_size] = data[data_size + 1] = 0;
        print(label + L" " + (name_size == 0 ? std::wstring(L"@") : name.data()) + L"=");
        if (type == REG_SZ || type == REG_EXPAND_SZ) {
            print(reinterpret_cast<const wchar_t*>(data.data()));
        } else {
            for (DWORD byte = 0; byte < data_size; ++byte) std::printf("%02X", data[byte]);
        }
        std::puts("");
    }
}

void print_tree(HKEY root, const std::wstring& path, const std::wstring& label) {
    const Key key(root, path);
    if (!key) return;
    print(label + L"\n");
    print_values(key, label);
    wchar_t name[256];
    DWORD size = 256;
    for (DWORD i = 0; RegEnumKeyExW(key.get(), i, name, &size, nullptr, nullptr, nullptr,
                                    nullptr) == ERROR_SUCCESS;
         ++i, size = 256) {
        print_tree(root, path + L'\\' + name, label + L'\\' + name);
    }
}

const struct {
    const wchar_t* label;
    HKEY key;
} roots[] = {{L"HKLM", HKEY_LOCAL_MACHINE}, {L"HKCU", HKEY_CURRENT_USER}};

constexpr struct {
    const wchar_t* path;
    bool has_views;
} keys[] = {
    {L"Morandel10.ComExpress", false},
    {L"Morandel10.ComExpress.1", false},
    {L"CLSID\\{BD4CF43D-5C7D-4E1C-B3B0-E3796A1BC833}", true},
    {L"TypeLib\\{87DBCB11-BA08-4380-8638-06173CDE5481}", false},
    {L"Interface\\{195C5069-9E2E-47CB-9B50-34BEABB8EF67}", true},
};

}  // namespace

int wmain(int count, wchar_t** arguments) {
    for (const auto& [label, root] : roots) {
        if (count > 1) {
            const std::wstring tree = arguments[1];
            if (tree.starts_with(label)) print_tree(root, tree.substr(tree.find(L'\\') + 1), tree);
            continue;
        }
        for (const wchar_t* view : {L"", L"Wow6432Node\\"}) {
            for (const auto& [key, has_views] : keys) {
                if (*view != L'\0' && !has_views) continue;
                print_tree(root, std::wstring(L"Software\\Classes\\") + view + key,
                           std::wstring(label) + L" " + view + key);
            }
        }
    }
    return 0;
}
