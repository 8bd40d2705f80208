// Keys below a classes root of the registry, in either view that a 64-bit Windows has of it.

#pragma once

#include <windows.h>

#include <string>

namespace morandel::automation {

// Where both views are one, as on a 32-bit Windows, the platform takes either for that one. Asked
// for a view by name, some platforms forget that a host has put another root in a root's place.
enum class View : REGSAM {
    own = 0,
    other = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY,
};

HRESULT registry_result(LSTATUS status);

class Key {
  public:
    Key() = default;
    ~Key();
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    // Each at most once.
    HRESULT create(HKEY parent, const std::wstring& path, REGSAM rights);
    HRESULT open(HKEY parent, const std::wstring& path, REGSAM rights);
    [[nodiscard]] HKEY get() const { return m_handle; }

  private:
    HKEY m_handle = nullptr;
};

// The classes of everybody, of the machine, or of the user.
struct ClassesRoot {
    HKEY key;
    std::wstring prefix;

    [[nodiscard]] bool has(const std::wstring& path, View view) const;
    // Writes the default value, or the named one.
    HRESULT write(const std::wstring& path, View view, const wchar_t* name,
                  const std::wstring& value) const;
    // With all below it. That there is none is no failure.
    HRESULT remove(const std::wstring& path, View view) const;
    // Unless there are keys below it.
    HRESULT remove_empty(const std::wstring& path, View view) const;
};

}  // namespace morandel::automation
