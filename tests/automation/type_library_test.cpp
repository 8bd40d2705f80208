// The type library, read back from the registered module.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "automation/pointer.h"
#include "tests/automation/host.h"

namespace {

using morandel::automation::Pointer;
using namespace morandel::hosts;

struct ExpectedParameter {
    const wchar_t* name;  // "a" or "b", from the compiler, for one that is given none
    VARTYPE type;         // of what an output points to
    bool is_output;
};

struct ExpectedMethod {
    const wchar_t* name;
    DISPID id;
    const wchar_t* help;
    std::vector<ExpectedParameter> parameters;
};

// In the order of the slots.
const std::vector<ExpectedMethod>& methods() {
    static const std::vector<ExpectedMethod> all = {
        {L"SetValue",
         1,
         L"method SetValue",
         {{L"iVarType", VT_INT, false},
          {L"szVarName", VT_LPSTR, false},
          {L"VarValue", VT_R8, false},
          {L"szExpress", VT_LPSTR, false}}},
        {L"GetValue",
         2,
         L"method GetValue",
         {{L"szVarName", VT_LPSTR, false}, {L"pVarValue", VT_R8, true}}},
        {L"Clear", 3, L"method Clear", {}},
        {L"GetLastErrorNum", 4, L"method GetLastErrorNum", {{L"pErrNum", VT_INT, true}}},
        {L"GetVariableCount", 5, L"method GetVariableCount", {{L"a", VT_INT, true}}},
        {L"ValidateExpression",
         7,
         L"method ValidateExpression",
         {{L"a", VT_LPSTR, false}, {L"b", VT_INT, true}}},
        {L"get_Variable",
         8,
         L"method get_Variable",
         {{L"a", VT_INT, false}, {L"pVal", VT_BSTR, true}}},
        {L"GetErrMsg", 9, L"method GetErrMsg", {{L"ErrMsg", VT_BSTR, true}}},
        {L"SetStringValue",
         10,
         L"method SetStringValue",
         {{L"iVarType", VT_INT, false},
          {L"szVarName", VT_LPSTR, false},
          {L"szVarvalue", VT_LPSTR, false},
          {L"szExpress", VT_LPSTR, false}}},
        {L"GetResultType", 11, L"method GetResultType", {{L"TYPE", VT_INT, true}}},
        {L"get_Variable_Type",
         12,
         L"method get_Variable_Type",
         {{L"Index", VT_INT, false}, {L"TYPE", VT_INT, true}}},
        // Deliberate: the help of another method.
        {L"GetStringValue",
         13,
         L"method GetValue",
         {{L"szVarName", VT_LPSTR, false}, {L"szResult", VT_BSTR, true}}},
        {L"ExpressionCheck",
         14,
         L"method ExpressionCheck",
         {{L"lpExpression", VT_LPSTR, false}, {L"pResult", VT_INT, true}, {L"Num", VT_INT, true}}},
        {L"GetExpressionError",
         15,
         L"method GetExpressionError",
         {{L"Index", VT_INT, true},
          {L"errornum", VT_INT, true},
          {L"position", VT_INT, true},
          {L"Para", VT_INT, true},
          {L"Name", VT_BSTR, true}}},
    };
    return all;
}

std::wstring taken(BSTR text) {
    const std::wstring copy(text == nullptr ? L"" : text, SysStringLen(text));
    SysFreeString(text);
    return copy;
}

struct Documentation {
    std::wstring name;
    std::wstring help;
};

template <class Source>
Documentation documentation(Source& source, int index) {
    BSTR name = nullptr;
    BSTR help = nullptr;
    EXPECT_EQ(source.GetDocumentation(index, &name, &help, nullptr, nullptr), S_OK);
    return {taken(name), taken(help)};
}

class TypeLibrary : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(LoadRegTypeLib(LIBID_MORANDELLib, 1, 0, LOCALE_NEUTRAL, m_library.fill()), S_OK);
    }
    Pointer<ITypeInfo> implementation() {
        Pointer<ITypeInfo> dispatch;
        EXPECT_EQ(m_library->GetTypeInfoOfGuid(IID_IComExpress, dispatch.fill()), S_OK);
        HREFTYPE reference = 0;
        EXPECT_EQ(dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference), S_OK);
        Pointer<ITypeInfo> found;
        EXPECT_EQ(dispatch->GetRefTypeInfo(reference, found.fill()), S_OK);
        return found;
    }

    Apartment m_apartment;
    Pointer<ITypeLib> m_library;
};

TEST_F(TypeLibrary, HasItsNameAndVersion) {
    const Documentation library = documentation(*m_library.get(), -1);
    EXPECT_EQ(library.name, L"MORANDELLib");
    EXPECT_EQ(library.help, L"Morandel 10.0 Type Library");
    TLIBATTR* attributes = nullptr;
    ASSERT_EQ(m_library->GetLibAttr(&attributes), S_OK);
    EXPECT_TRUE(IsEqualGUID(attributes->guid, LIBID_MORANDELLib));
    EXPECT_EQ(attributes->wMajorVerNum, 1);
    EXPECT_EQ(attributes->wMinorVerNum, 0);
    EXPECT_EQ(attributes->syskind, sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32);
    m_library->ReleaseTLibAttr(attributes);
    EXPECT_EQ(m_library->GetTypeInfoCount(), 2U);
}

TEST_F(TypeLibrary, HoldsTheClass) {
    Pointer<ITypeInfo> coclass;
    ASSERT_EQ(m_library->GetTypeInfoOfGuid(CLSID_ComExpress, coclass.fill()), S_OK);
    const Documentation described = documentation(*coclass.get(), -1);
    EXPECT_EQ(described.name, L"ComExpress");
    EXPECT_EQ(described.help, L"Morandel10.ComExpress.1");
    int flags = 0;
    ASSERT_EQ(coclass->GetImplTypeFlags(0, &flags), S_OK);
    EXPECT_EQ(flags, IMPLTYPEFLAG_FDEFAULT);
    HREFTYPE reference = 0;
    Pointer<ITypeInfo> side;
    ASSERT_EQ(coclass->GetRefTypeOfImplType(0, &reference), S_OK);
    ASSERT_EQ(coclass->GetRefTypeInfo(reference, side.fill()), S_OK);
    EXPECT_EQ(documentation(*side.get(), -1).name, L"IComExpress");
}

TEST_F(TypeLibrary, HoldsTheDualInterface) {
    Pointer<ITypeInfo> dispatch;
    ASSERT_EQ(m_library->GetTypeInfoOfGuid(IID_IComExpress, dispatch.fill()), S_OK);
    EXPECT_EQ(documentation(*dispatch.get(), -1).help, L"IComExpress Interface");
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(dispatch->GetTypeAttr(&attributes), S_OK);
    EXPECT_EQ(attributes->typekind, TKIND_DISPATCH);
    EXPECT_NE(attributes->wTypeFlags & TYPEFLAG_FDUAL, 0);
    dispatch->ReleaseTypeAttr(attributes);
}

TEST_F(TypeLibrary, DescribesEachMethod) {
    const Pointer<ITypeInfo> information = implementation();
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(information->GetTypeAttr(&attributes), S_OK);
    ASSERT_EQ(attributes->cFuncs, methods().size());
    information->ReleaseTypeAttr(attributes);
    constexpr std::size_t first_slot = 7;  // after those of IDispatch
    for (std::size_t i = 0; i < methods().size(); ++i) {
        const ExpectedMethod& expected = methods()[i];
        FUNCDESC* found = nullptr;
        ASSERT_EQ(information->GetFuncDesc(static_cast<UINT>(i), &found), S_OK);
        EXPECT_EQ(found->memid, expected.id) << expected.name;
        EXPECT_EQ(static_cast<std::size_t>(found->oVft), (first_slot + i) * sizeof(void*));
        EXPECT_EQ(found->invkind, INVOKE_FUNC);
        EXPECT_EQ(found->elemdescFunc.tdesc.vt, VT_HRESULT);
        const Documentation described = documentation(*information.get(), found->memid);
        EXPECT_EQ(described.name, expected.name);
        EXPECT_EQ(described.help, expected.help);
        ASSERT_EQ(static_cast<std::size_t>(found->cParams), expected.parameters.size());

        BSTR names[8] = {};
        UINT count = 0;
        ASSERT_EQ(information->GetNames(found->memid, names, 8, &count), S_OK);
        std::vector<std::wstring> words;
        for (UINT n = 0; n < count; ++n) words.push_back(taken(names[n]));
        words.resize(expected.parameters.size() + 1);
        for (std::size_t p = 0; p < expected.parameters.size(); ++p) {
            const ELEMDESC& parameter = found->lprgelemdescParam[p];
            const bool is_output = parameter.tdesc.vt == VT_PTR;
            EXPECT_EQ(is_output, expected.parameters[p].is_output);
            EXPECT_EQ(parameter.paramdesc.wParamFlags, is_output ? PARAMFLAG_FOUT : PARAMFLAG_FIN);
            EXPECT_EQ(is_output ? parameter.tdesc.lptdesc->vt : parameter.tdesc.vt,
                      expected.parameters[p].type);
            EXPECT_EQ(words[p + 1], expected.parameters[p].name) << expected.name;
        }
        information->ReleaseFuncDesc(found);
    }
}

TEST_F(TypeLibrary, GivesTheNumbersOfNames) {
    const Host host;
    ASSERT_EQ(host.created, S_OK);
    for (const ExpectedMethod& method : methods()) EXPECT_EQ(host.id_of(method.name), method.id);
    EXPECT_EQ(host.id_of(L"getvalue"), 2) << "case does not count";
    EXPECT_EQ(host.id_of(L"Nothing"), DISPID_UNKNOWN);
    LPOLESTR names[] = {const_cast<wchar_t*>(L"SetValue"), const_cast<wchar_t*>(L"VarValue"),
                        const_cast<wchar_t*>(L"iVarType")};
    DISPID ids[3] = {};
    EXPECT_EQ(host.get()->GetIDsOfNames(IID_NULL, names, 3, 0, ids), S_OK);
    EXPECT_EQ(ids[1], 2);
    EXPECT_EQ(ids[2], 0);
    EXPECT_EQ(host.get()->GetIDsOfNames(IID_IDispatch, names, 1, 0, ids), DISP_E_UNKNOWNINTERFACE);
    EXPECT_EQ(host.get()->GetIDsOfNames(IID_NULL, nullptr, 1, 0, ids), E_INVALIDARG);
    EXPECT_EQ(host.get()->GetIDsOfNames(IID_NULL, names, 1, 0, nullptr), E_INVALIDARG);
}

}  // namespace
