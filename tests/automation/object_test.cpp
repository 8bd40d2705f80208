// The object and its module as an early-bound C++ host meets them, by the header that is made from
// the interface description.

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "automation/pointer.h"
#include "tests/automation/host.h"

namespace {

using morandel::automation::Pointer;
using namespace morandel::hosts;

std::wstring text_of(BSTR text) {
    std::wstring copy(text, SysStringLen(text));
    SysFreeString(text);
    return copy;
}

// Parameters are no constants in the interface, though nothing writes to them.
char* bytes(const char* text) { return const_cast<char*>(text); }

class Object : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(CoCreateInstance(CLSID_ComExpress, nullptr, CLSCTX_INPROC_SERVER, IID_IComExpress,
                                   m_object.fill_untyped()),
                  S_OK);
    }
    double value_of(const char* name) {
        double value = -1.0;
        EXPECT_EQ(m_object->GetValue(bytes(name), &value), S_OK);
        return value;
    }
    int status() {
        int status = -1;
        EXPECT_EQ(m_object->GetLastErrorNum(&status), S_OK);
        return status;
    }
    std::wstring message() {
        BSTR text = nullptr;
        EXPECT_EQ(m_object->GetErrMsg(&text), S_OK);
        return text_of(text);
    }
    std::wstring string_of(const char* name) {
        BSTR text = nullptr;
        EXPECT_EQ(m_object->GetStringValue(bytes(name), &text), S_OK);
        return text_of(text);
    }

    Apartment m_apartment;
    Pointer<IComExpress> m_object;
};

TEST_F(Object, BeginsEmpty) {
    EXPECT_EQ(status(), 0);
    EXPECT_EQ(message(), L"");
    int count = -1;
    EXPECT_EQ(m_object->GetVariableCount(&count), S_OK);
    EXPECT_EQ(count, 0);
    int type = 7;
    EXPECT_EQ(m_object->GetResultType(&type), S_OK);
    EXPECT_EQ(type, 0);
    EXPECT_EQ(value_of("a"), 0.0);
    EXPECT_EQ(status(), 1) << "an empty list calculates successfully";
    EXPECT_EQ(string_of("a"), L"");
}

TEST_F(Object, TheTypicalRequest) {
    EXPECT_EQ(m_object->SetValue(1, bytes("a"), 2.0, bytes("")), S_OK);
    EXPECT_EQ(status(), 1);
    EXPECT_EQ(m_object->SetValue(0, bytes("b"), 0.0, bytes("a*3")), S_OK);
    EXPECT_EQ(value_of("b"), 6.0);
    EXPECT_EQ(status(), 1);
    EXPECT_EQ(value_of("a"), 2.0);
    EXPECT_EQ(value_of("nobody"), 2.0) << "the first variable's";
    int type = -1;
    EXPECT_EQ(m_object->GetResultType(&type), S_OK);
    EXPECT_EQ(type, 1);
}

TEST_F(Object, ASecondSettingOfANameAddsARecord) {
    m_object->SetValue(1, bytes("a"), 1.0, bytes(""));
    m_object->SetValue(1, bytes("a"), 2.0, bytes(""));
    EXPECT_EQ(value_of("a"), 1.0);
}

TEST_F(Object, TextsAndTheirResults) {
    m_object->SetStringValue(1, bytes("s"), bytes("\xC6\xBB\xB9\xFB"), bytes(""));
    EXPECT_EQ(string_of("s"), L"\x82F9\x679C") << "before any calculation, the stored text";
    m_object->SetStringValue(0, bytes("t"), bytes(""), bytes("strcat(s, \"!\")"));
    EXPECT_EQ(string_of("t"), L"");
    EXPECT_EQ(value_of("t"), 0.0);
    EXPECT_EQ(string_of("t"), L"\x82F9\x679C!");
    int type = -1;
    m_object->GetResultType(&type);
    EXPECT_EQ(type, 2);
}

TEST_F(Object, FailureAndRecovery) {
    m_object->SetValue(0, bytes("b"), 0.0, bytes("(1+2"));
    EXPECT_EQ(value_of("b"), 0.0);
    EXPECT_EQ(status(), 0);
    EXPECT_EQ(message(), L"\x7F3A\x5C11')'");
    EXPECT_EQ(string_of("b"), L"") << "after a failure";
    EXPECT_EQ(m_object->Clear(), S_OK);
    EXPECT_EQ(status(), 0) << "Clear leaves the status";
    EXPECT_EQ(message(), L"\x7F3A\x5C11')'") << "and the message";
    m_object->SetValue(1, bytes("a"), 5.0, bytes(""));
    EXPECT_EQ(value_of("a"), 5.0);
    EXPECT_EQ(status(), 1);
    EXPECT_EQ(message(), L"\x7F3A\x5C11')'") << "no method clears the message";
}

TEST_F(Object, ValidationAndFreeVariables) {
    int ok = -1;
    EXPECT_EQ(m_object->ValidateExpression(bytes("strsub(s, n, 2) + x"), &ok), S_OK);
    EXPECT_EQ(ok, 1);
    EXPECT_EQ(status(), 0) << "untouched";
    int count = -1;
    m_object->GetVariableCount(&count);
    ASSERT_EQ(count, 3);
    for (const auto& [index, name, type] :
         {std::tuple{1, L"s", 2}, std::tuple{2, L"n", 0}, std::tuple{3, L"x", 1}}) {
        BSTR found = nullptr;
        EXPECT_EQ(m_object->get_Variable(index, &found), S_OK);
        EXPECT_EQ(text_of(found), name);
        int found_type = -1;
        EXPECT_EQ(m_object->get_Variable_Type(index, &found_type), S_OK);
        EXPECT_EQ(found_type, type);
    }
    for (const int index : {0, 4, -1, 1'000'000}) {
        BSTR found = nullptr;
        m_object->get_Variable(index, &found);
        EXPECT_EQ(text_of(found), L"");
    }
    m_object->ValidateExpression(bytes("1+"), &ok);
    EXPECT_EQ(ok, 0);
    EXPECT_NE(message(), L"");
}

TEST_F(Object, FaultsOfAFormula) {
    int result = -1;
    int count = 77;
    m_object->ExpressionCheck(bytes("1+2"), &result, &count);
    EXPECT_EQ(result, 1);
    EXPECT_EQ(count, 77) << "unwritten";
    m_object->ExpressionCheck(bytes("sqrt(\"a\")+strlen(\"b\")+(\"c\"*2)+sin(\"d\")"), &result,
                              &count);
    EXPECT_EQ(result, 0);
    ASSERT_GE(count, 2);
    for (int again = 0; again < 2; ++again) {
        int index = -1;
        int type = -1;
        int position = -1;
        int operand = -1;
        BSTR name = nullptr;
        EXPECT_EQ(m_object->GetExpressionError(&index, &type, &position, &operand, &name), S_OK);
        EXPECT_EQ(index, count - 1);
        EXPECT_EQ(type, 1);
        EXPECT_EQ(operand, 1);
        EXPECT_EQ(text_of(name), L"sqrt") << "always the first";
    }
    m_object->ExpressionCheck(bytes("1"), &result, &count);
    EXPECT_EQ(result, 1) << "the faults of the check before are gone";
}

TEST_F(Object, NullPointersAreNotWrittenThrough) {
    EXPECT_EQ(m_object->SetValue(1, nullptr, 1.0, nullptr), S_OK);
    EXPECT_EQ(m_object->SetStringValue(1, nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(m_object->GetValue(nullptr, nullptr), S_OK);
    EXPECT_EQ(m_object->GetLastErrorNum(nullptr), S_OK);
    EXPECT_EQ(m_object->GetVariableCount(nullptr), S_OK);
    EXPECT_EQ(m_object->ValidateExpression(nullptr, nullptr), S_OK);
    EXPECT_EQ(m_object->get_Variable(1, nullptr), S_OK);
    EXPECT_EQ(m_object->GetErrMsg(nullptr), S_OK);
    EXPECT_EQ(m_object->GetResultType(nullptr), S_OK);
    EXPECT_EQ(m_object->get_Variable_Type(1, nullptr), S_OK);
    EXPECT_EQ(m_object->GetStringValue(nullptr, nullptr), S_OK);
    EXPECT_EQ(m_object->ExpressionCheck(nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(m_object->ExpressionCheck(bytes("\"a\"+1"), nullptr, nullptr), S_OK);
    EXPECT_EQ(m_object->GetExpressionError(nullptr, nullptr, nullptr, nullptr, nullptr), S_OK);
}

// The dispatch side of IComExpress is IDispatch; all sides are one object.
TEST_F(Object, QueryInterfaceKeepsItsRules) {
    const IID* sides[] = {&IID_IUnknown, &IID_IDispatch, &IID_IComExpress};
    Pointer<IUnknown> identity;
    ASSERT_EQ(m_object->QueryInterface(IID_IUnknown, identity.fill_untyped()), S_OK);
    for (const IID* from : sides) {
        Pointer<IUnknown> first;
        ASSERT_EQ(m_object->QueryInterface(*from, first.fill_untyped()), S_OK);
        for (const IID* to : sides) {
            Pointer<IUnknown> second;
            ASSERT_EQ(first->QueryInterface(*to, second.fill_untyped()), S_OK);
            Pointer<IUnknown> back;
            EXPECT_EQ(second->QueryInterface(*from, back.fill_untyped()), S_OK);
            EXPECT_EQ(back.get(), first.get());
            Pointer<IUnknown> same;
            EXPECT_EQ(second->QueryInterface(IID_IUnknown, same.fill_untyped()), S_OK);
            EXPECT_EQ(same.get(), identity.get());
        }
        void* nothing = &nothing;
        EXPECT_EQ(first->QueryInterface(IID_IClassFactory, &nothing), E_NOINTERFACE);
        EXPECT_EQ(nothing, nullptr);
        EXPECT_EQ(first->QueryInterface(*from, nullptr), E_POINTER);
    }
}

TEST_F(Object, TypeInformationHasOneIndex) {
    UINT count = 9;
    EXPECT_EQ(m_object->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1U);
    Pointer<ITypeInfo> information;
    EXPECT_EQ(m_object->GetTypeInfo(0, 0, information.fill()), S_OK);
    EXPECT_TRUE(information);
    EXPECT_EQ(m_object->GetTypeInfo(1, 0, information.fill()), DISP_E_BADINDEX);
    EXPECT_FALSE(information);
    EXPECT_EQ(m_object->GetTypeInfo(0, 0, nullptr), E_POINTER);
    EXPECT_EQ(m_object->GetTypeInfoCount(nullptr), E_POINTER);
}

// An object that has the automation object for a part.
class Outer final : public IUnknown {
  public:
    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        if (!IsEqualIID(iid, IID_IUnknown)) return part->QueryInterface(iid, object);
        *object = this;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
    STDMETHODIMP_(ULONG) Release() override { return --references; }

    ULONG references = 1;
    Pointer<IUnknown> part;
};

TEST_F(Object, BecomesPartOfAnAggregate) {
    Outer outer;
    void* refused = &outer;
    EXPECT_EQ(
        CoCreateInstance(CLSID_ComExpress, &outer, CLSCTX_INPROC_SERVER, IID_IComExpress, &refused),
        CLASS_E_NOAGGREGATION);
    EXPECT_EQ(refused, nullptr);
    ASSERT_EQ(CoCreateInstance(CLSID_ComExpress, &outer, CLSCTX_INPROC_SERVER, IID_IUnknown,
                               outer.part.fill_untyped()),
              S_OK);
    Pointer<IComExpress> side;
    ASSERT_EQ(outer.QueryInterface(IID_IComExpress, side.fill_untyped()), S_OK);
    EXPECT_EQ(outer.references, 2U) << "its references count for the outer object";
    Pointer<IUnknown> identity;
    EXPECT_EQ(side->QueryInterface(IID_IUnknown, identity.fill_untyped()), S_OK);
    EXPECT_EQ(identity.get(), &outer);
    EXPECT_NE(identity.get(), outer.part.get());
    double value = 0.0;
    side->SetValue(0, bytes("a"), 0.0, bytes("6*7"));
    EXPECT_EQ(side->GetValue(bytes("a"), &value), S_OK);
    EXPECT_EQ(value, 42.0);
    identity = {};
    side = {};
    EXPECT_EQ(outer.references, 1U);
}

// What a process asks the module itself.
class Library : public testing::Test {
  protected:
    void SetUp() override {
        wchar_t path[MAX_PATH];
        LONG size = sizeof path;
        ASSERT_EQ(RegQueryValueW(HKEY_CLASSES_ROOT,
                                 L"CLSID\\{BD4CF43D-5C7D-4E1C-B3B0-E3796A1BC833}\\InprocServer32",
                                 path, &size),
                  ERROR_SUCCESS);
        m_library = LoadLibraryW(path);
        ASSERT_NE(m_library, nullptr);
    }
    void TearDown() override { FreeLibrary(m_library); }
    template <class Function>
    Function* find(const char* name) {
        return reinterpret_cast<Function*>(
            reinterpret_cast<void*>(GetProcAddress(m_library, name)));
    }
    Pointer<IClassFactory> factory() {
        Pointer<IClassFactory> made;
        EXPECT_EQ(find<decltype(DllGetClassObject)>("DllGetClassObject")(
                      CLSID_ComExpress, IID_IClassFactory, made.fill_untyped()),
                  S_OK);
        return made;
    }
    HRESULT can_unload() { return find<decltype(DllCanUnloadNow)>("DllCanUnloadNow")(); }

    HMODULE m_library = nullptr;
};

TEST_F(Library, HandsOutOneFactory) {
    auto* get = find<decltype(DllGetClassObject)>("DllGetClassObject");
    EXPECT_EQ(factory().get(), factory().get());
    void* object = this;
    EXPECT_EQ(get(IID_IComExpress, IID_IClassFactory, &object), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(get(CLSID_ComExpress, IID_IDispatch, &object), E_NOINTERFACE);
    EXPECT_EQ(get(CLSID_ComExpress, IID_IClassFactory, nullptr), E_POINTER);
    EXPECT_EQ(factory()->CreateInstance(nullptr, IID_IComExpress, nullptr), E_POINTER);
    EXPECT_EQ(factory()->CreateInstance(nullptr, IID_IClassFactory, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(can_unload(), S_OK) << "the object made for that query is gone";
}

TEST_F(Library, StaysWhileObjectsOrLocksRemain) {
    EXPECT_EQ(can_unload(), S_OK);
    Pointer<IComExpress> first;
    Pointer<IComExpress> second;
    ASSERT_EQ(factory()->CreateInstance(nullptr, IID_IComExpress, first.fill_untyped()), S_OK);
    ASSERT_EQ(factory()->CreateInstance(nullptr, IID_IComExpress, second.fill_untyped()), S_OK);
    EXPECT_EQ(can_unload(), S_FALSE);
    first = {};
    EXPECT_EQ(can_unload(), S_FALSE);
    second = {};
    EXPECT_EQ(can_unload(), S_OK);
    factory()->LockServer(TRUE);
    EXPECT_EQ(can_unload(), S_FALSE);
    factory()->LockServer(FALSE);
    EXPECT_EQ(can_unload(), S_OK);
}

TEST_F(Library, UnloadsAndLoadsAgain) {
    for (int i = 0; i < 20; ++i) {
        Pointer<IComExpress> object;
        ASSERT_EQ(factory()->CreateInstance(nullptr, IID_IComExpress, object.fill_untyped()), S_OK);
        Pointer<ITypeInfo> information;
        EXPECT_EQ(object->GetTypeInfo(0, 0, information.fill()), S_OK);
        information = {};
        object = {};
        ASSERT_EQ(can_unload(), S_OK);
        TearDown();
        SetUp();
    }
}

TEST_F(Library, CarriesItsResources) {
    wchar_t name[32] = L"";
    EXPECT_GT(LoadStringW(m_library, 100, name, 32), 0);
    EXPECT_EQ(std::wstring(name), L"Morandel");
    EXPECT_NE(FindResourceW(m_library, MAKEINTRESOURCEW(1), L"TYPELIB"), nullptr);
    EXPECT_NE(FindResourceW(m_library, MAKEINTRESOURCEW(102), L"REGISTRY"), nullptr);
    const struct {
        WORD type;
        WORD number;
    } others[] = {{3, 1}, {14, 1}, {16, 1}, {24, 1}};  // icon, its group, version, manifest
    for (const auto& [type, number] : others) {
        EXPECT_NE(FindResourceW(m_library, MAKEINTRESOURCEW(number), MAKEINTRESOURCEW(type)),
                  nullptr)
            << type;
    }
}

TEST_F(Library, SaysWhatItIs) {
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(m_library, path, MAX_PATH);
    std::vector<BYTE> version(GetFileVersionInfoSizeW(path, nullptr));
    ASSERT_NE(GetFileVersionInfoW(path, 0, static_cast<DWORD>(version.size()), version.data()), 0);
    const std::pair<const wchar_t*, const wchar_t*> strings[] = {
        {L"FileDescription", L"Morandel formula calculation"},
        {L"FileVersion", L"10.0.0"},
        {L"InternalName", L"Morandel10"},
        {L"OriginalFilename", L"Morandel10.dll"},
        {L"ProductName", L"Morandel"},
        {L"ProductVersion", L"10.0.0"},
    };
    for (const auto& [name, wanted] : strings) {
        void* text = nullptr;
        UINT size = 0;
        const std::wstring place = std::wstring(L"\\StringFileInfo\\040904B0\\") + name;
        ASSERT_NE(VerQueryValueW(version.data(), place.c_str(), &text, &size), 0) << place.size();
        EXPECT_EQ(std::wstring(static_cast<const wchar_t*>(text)), wanted);
    }
    void* fixed = nullptr;
    UINT size = 0;
    ASSERT_NE(VerQueryValueW(version.data(), L"\\", &fixed, &size), 0);
    EXPECT_EQ(static_cast<const VS_FIXEDFILEINFO*>(fixed)->dwFileVersionMS, 10U << 16U);
    EXPECT_EQ(static_cast<const VS_FIXEDFILEINFO*>(fixed)->dwFileVersionLS, 0U);
}

TEST_F(Library, AHundredThousandObjectsLeaveNothingBehind) {
    const Pointer<IClassFactory> makes = factory();
    std::size_t before = 0;
    for (int i = 0; i < 100'000; ++i) {
        if (i == 1000) before = memory_in_use();
        Pointer<IComExpress> object;
        ASSERT_EQ(makes->CreateInstance(nullptr, IID_IComExpress, object.fill_untyped()), S_OK);
        double value = 0.0;
        object->SetValue(0, bytes("a"), 0.0, bytes("2*3"));
        object->GetValue(bytes("a"), &value);
        ASSERT_EQ(value, 6.0);
    }
    EXPECT_LT(memory_in_use(), before + 65'536);
}

}  // namespace
