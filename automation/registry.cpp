#include "automation/registry.h"

namespace morandel::automation {
namespace {

REGSAM rights_in(View view, REGSAM rights) { return rights | static_cast<REGSAM>(view); }

HRESULT unless_missing(LSTATUS status) {
    return status == ERROR_FILE_NOT_FOUND ? S_OK : registry_result(status);
}

}  // namespace

HRESULT registry_result(LSTATUS status) {
    return HRESULT_FROM_WIN32(static_cast<unsigned long>(status));
}

Key::~Key() {
    if (m_handle != nullptr) RegCloseKey(m_handle);
}

HRESULT Key::create(HKEY parent, const std::wstring& path, REGSAM rights) {
    return registry_result(
        RegCreateKeyExW(parent, path.c_str(), 0, nullptr, 0, rights, nullptr, &m_handle, nullptr));
}

HRESULT Key::open(HKEY parent, const std::wstring& path, REGSAM rights) {
    return registry_result(RegOpenKeyExW(parent, path.c_str(), 0, rights, &m_handle));
}

bool ClassesRoot::has(const std::wstring& path, View view) const {
    return SUCCEEDED(Key().open(key, prefix + path, rights_in(view, KEY_READ)));
}

HRESULT ClassesRoot::write(const std::wstring& path, View view, const wchar_t* name,
                           const std::wstring& value) const {
    Key written;
    const HRESULT created = written.create(key, prefix + path, rights_in(view, KEY_WRITE));
    if (FAILED(created)) return created;
    const auto size = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
    return registry_result(RegSetValueExW(written.get(), name, 0, REG_SZ,
                                          reinterpret_cast<const BYTE*>(value.c_str()), size));
}

HRESULT ClassesRoot::remove(const std::wstring& path, View view) const {
    {
        Key removed;
        const HRESULT opened =
            removed.open(key, prefix + path, rights_in(view, KEY_READ | KEY_WRITE | DELETE));
        if (opened == registry_result(ERROR_FILE_NOT_FOUND)) return S_OK;
        if (FAILED(opened)) return opened;
        const HRESULT emptied = unless_missing(RegDeleteTreeW(removed.get(), nullptr));
        if (FAILED(emptied)) return emptied;
    }
    return unless_missing(
        RegDeleteKeyExW(key, (prefix + path).c_str(), static_cast<REGSAM>(view), 0));
}

HRESULT ClassesRoot::remove_empty(const std::wstring& path, View view) const {
    {
        Key looked_at;
        if (FAILED(looked_at.open(key, prefix + path, rights_in(view, KEY_READ)))) return S_OK;
        DWORD children = 0;
        const LSTATUS status =
            RegQueryInfoKeyW(looked_at.get(), nullptr, nullptr, nullptr, &children, nullptr,
                             nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
        if (status != ERROR_SUCCESS || children != 0) return registry_result(status);
    }
    return remove(path, view);
}

}  // namespace morandel::automation
