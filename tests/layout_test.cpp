// Programs that were built with an earlier library of the same major version go on working: sizes
// and places within what hosts see stay.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include <morandel.h>

namespace {

// The version that the table below is of. Where a layout must change, raise the major version of
// the project, then this one, and write what the test found into the table.
constexpr int table_version = 10;

struct Layout {
    const char* what;
    std::size_t found;
    std::size_t linux_x64;
    std::size_t windows_x64;
    std::size_t windows_x86;

    [[nodiscard]] std::size_t wanted() const {
#ifndef _WIN32
        return linux_x64;
#else
        return sizeof(void*) == 8 ? windows_x64 : windows_x86;
#endif
    }
};

template <class Class, class Member>
std::size_t place_of(Member Class::*member) {
    const Class object{};
    return static_cast<std::size_t>(reinterpret_cast<const char*>(&(object.*member)) -
                                    reinterpret_cast<const char*>(&object));
}

// clang-format off
const Layout layouts[] = {
    {"CExpress",                            sizeof(CExpress),                                80,  80,  56},
    {"CExpress::m_StrResult",               place_of(&CExpress::m_StrResult),                 0,   0,   0},
    {"CExpress::m_ErrorMessage",            place_of(&CExpress::m_ErrorMessage),             32,  32,  24},
    {"CExpress::m_Status",                  place_of(&CExpress::m_Status),                   64,  64,  48},
    {"MYPARA",                              sizeof(MYPARA),                                  72,  72,  56},
    {"MYPARA::name",                        place_of(&MYPARA::name),                          0,   0,   0},
    {"MYPARA::value",                       place_of(&MYPARA::value),                        32,  32,  24},
    {"MYPARA::strValue",                    place_of(&MYPARA::strValue),                     40,  40,  32},
    {"VariableNode",                        sizeof(VariableNode),                            48,  48,  32},
    {"VariableNode::name",                  place_of(&VariableNode::name),                    0,   0,   0},
    {"VariableNode::type",                  place_of(&VariableNode::type),                   32,  32,  24},
    {"VariableNode::next",                  place_of(&VariableNode::next),                   40,  40,  28},
    {"CExpressionCheck",                    sizeof(CExpressionCheck),                       208, 208, 140},
    {"CExpressionCheck::m_errors",          place_of(&CExpressionCheck::m_errors),           88,  88,  60},
    {"CExpressionCheck::m_current",         place_of(&CExpressionCheck::m_current),         112, 112,  72},
    {"CExpressionCheck::m_step",            place_of(&CExpressionCheck::m_step),            160, 160, 108},
    {"CExpressionCheck::m_depth",           place_of(&CExpressionCheck::m_depth),           164, 164, 112},
    {"CExpressionCheck::m_resultKind",      place_of(&CExpressionCheck::m_resultKind),      168, 168, 116},
    {"CExpressionCheck::m_tokenCount",      place_of(&CExpressionCheck::m_tokenCount),      172, 172, 120},
    {"CExpressionCheck::m_argKinds",        place_of(&CExpressionCheck::m_argKinds),        176, 176, 124},
    {"CheckexpressionError",                sizeof(CheckexpressionError),                    48,  48,  36},
    {"CheckexpressionError::nType",         place_of(&CheckexpressionError::nType),           0,   0,   0},
    {"CheckexpressionError::nPosition",     place_of(&CheckexpressionError::nPosition),       4,   4,   4},
    {"CheckexpressionError::nIndex",        place_of(&CheckexpressionError::nIndex),          8,   8,   8},
    {"CheckexpressionError::strName",       place_of(&CheckexpressionError::strName),        16,  16,  12},
    {"CVariableExpress",                    sizeof(CVariableExpress),                       136, 136, 104},
    {"CVariableExpressList",                sizeof(CVariableExpressList),                    56,  56,  40},
    {"CVariableExpressList::m_strError",    place_of(&CVariableExpressList::m_strError),      0,   0,   0},
    {"CVariableExpressList::m_nResultType", place_of(&CVariableExpressList::m_nResultType),  32,  32,  24},
    {"CCStringNode",                        sizeof(CCStringNode),                            40,  40,  28},
    {"CCStringNode::m_strText",             place_of(&CCStringNode::m_strText),               0,   0,   0},
    {"CCStringNode::m_pNext",               place_of(&CCStringNode::m_pNext),                32,  32,  24},
    {"Function",                            sizeof(morandel::Function),                     112, 112,  56},
    {"Function::name",                      place_of(&morandel::Function::name),              0,   0,   0},
    {"Function::code",                      place_of(&morandel::Function::code),             16,  16,   8},
    {"Function::kinds",                     place_of(&morandel::Function::kinds),            24,  24,  12},
    {"Function::first_type",                place_of(&morandel::Function::first_type),       40,  40,  20},
    {"Function::further_types",             place_of(&morandel::Function::further_types),    48,  48,  24},
    {"Function::arguments",                 place_of(&morandel::Function::arguments),        64,  64,  32},
    {"Function::summary",                   place_of(&morandel::Function::summary),          80,  80,  40},
    {"Function::example",                   place_of(&morandel::Function::example),          96,  96,  48},
    {"ErrorText",                           sizeof(morandel::ErrorText),                     40,  40,  20},
    {"ErrorText::number",                   place_of(&morandel::ErrorText::number),           0,   0,   0},
    {"ErrorText::message",                  place_of(&morandel::ErrorText::message),          8,   8,   4},
    {"ErrorText::english",                  place_of(&morandel::ErrorText::english),         24,  24,  12},
    {"Table<Function>",                     sizeof(morandel::Table<morandel::Function>),     16,  16,   8},
    {"ErrorNumber",                         sizeof(morandel::ErrorNumber),                    4,   4,   4},
};
// clang-format on

TEST(Layout, StaysWithinAMajorVersion) {
    ASSERT_EQ(MORANDEL_SOVERSION, table_version)
        << "write the layouts of the new version into " __FILE__;
    for (const Layout& layout : layouts) {
        EXPECT_EQ(layout.found, layout.wanted())
            << layout.what << " has changed within major version " << table_version
            << ": programs built before would break. Undo it, or raise the version of the project.";
    }
}

}  // namespace
