// The DLL's registration where the registry refuses to be written to. MORANDEL_MODULE tells which
// DLL.

#include <gtest/gtest.h>

#include <windows.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace {

class Key {
  public:
    Key(HKEY parent, const wchar_t* name, DWORD options) {
        RegCreateKeyExW(parent, name, 0, nullptr, options, KEY_ALL_ACCESS, nullptr, &m_handle,
                        nullptr);
    }
    ~Key() { RegCloseKey(m_handle); }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    [[nodiscard]] HKEY get() const { return m_handle; }

    [[nodiscard]] std::vector<std::wstring> children() const {
        std::vector<std::wstring> names;
        wchar_t name[256];
        DWORD size = 256;
        for (DWORD i = 0; RegEnumKeyExW(m_handle, i, name, &size, nullptr, nullptr, nullptr,
                                        nullptr) == ERROR_SUCCESS;
             ++i, size = 256) {
            names.emplace_back(name);
        }
        return names;
    }

  private:
    HKEY m_handle = nullptr;
};

constexpr const wchar_t* place = L"Software\\MorandelRegistrationTest";

// A classes root that holds the keys that systems have, one of which takes no lasting keys: that is
// how a registry without rights looks from within a process that has them.
class Root {
  public:
    explicit Root(const std::wstring& refusing) : m_root(HKEY_CURRENT_USER, place, 0) {
        for (const wchar_t* name : system_keys) {
            const Key key(m_root.get(), name, name == refusing ? REG_OPTION_VOLATILE : 0);
        }
        RegOverridePredefKey(HKEY_CLASSES_ROOT, m_root.get());
    }
    ~Root() {
        RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
        RegDeleteTreeW(HKEY_CURRENT_USER, place);
    }
    Root(const Root&) = delete;
    Root& operator=(const Root&) = delete;

    // What there is besides the keys it began with.
    [[nodiscard]] std::wstring left() const {
        std::wstring all;
        for (const std::wstring& name : m_root.children()) {
            bool is_system = false;
            for (const wchar_t* system : system_keys) is_system = is_system || name == system;
            if (!is_system) all += name + L' ';
            const Key key(m_root.get(), name.c_str(), 0);
            if (!is_system) continue;
            for (const std::wstring& child : key.children()) all += name + L'\\' + child + L' ';
        }
        return all;
    }

  private:
    static constexpr const wchar_t* system_keys[] = {L"CLSID", L"Interface", L"TypeLib"};
    Key m_root;
};

class Registration : public testing::Test {
  protected:
    void SetUp() override {
        const wchar_t* path = _wgetenv(L"MORANDEL_MODULE");
        ASSERT_NE(path, nullptr);
        m_module = LoadLibraryW(path);
        ASSERT_NE(m_module, nullptr);
    }
    void TearDown() override { FreeLibrary(m_module); }

    [[nodiscard]] HRESULT call(const char* name) const {
        const FARPROC found = GetProcAddress(m_module, name);
        return reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(reinterpret_cast<void*>(found))();
    }

  private:
    HMODULE m_module = nullptr;
};

TEST_F(Registration, LeavesNothingBehindWhereAKeyRefuses) {
    for (const wchar_t* refusing : {L"CLSID", L"TypeLib", L"Interface"}) {
        const Root root(refusing);
        EXPECT_TRUE(FAILED(call("DllRegisterServer"))) << refusing;
        EXPECT_EQ(root.left(), L"") << refusing;
    }
}

TEST_F(Registration, LeavesNothingBehindWhereTheRootRefuses) {
    {
        const Key root(HKEY_CURRENT_USER, place, REG_OPTION_VOLATILE);
        RegOverridePredefKey(HKEY_CLASSES_ROOT, root.get());
        EXPECT_TRUE(FAILED(call("DllRegisterServer")));
        EXPECT_TRUE(root.children().empty());
        RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
    }
    RegDeleteTreeW(HKEY_CURRENT_USER, place);
}

// That the keys above would be written if nothing refused.
TEST_F(Registration, WritesAndRemovesItsKeysInAnotherRoot) {
    const Root root(L"none");
    EXPECT_EQ(call("DllRegisterServer"), S_OK);
    EXPECT_NE(root.left(), L"");
    EXPECT_EQ(call("DllUnregisterServer"), S_OK);
    EXPECT_EQ(root.left(), L"");
}

}  // namespace
