#include <windows.h>

#include "formula/system_code_page.h"

namespace morandel::formula {
namespace {

constexpr UINT code_page = 936;

}  // namespace

SystemCodePage::SystemCodePage() : m_handle(IsValidCodePage(code_page) != FALSE ? this : nullptr) {}

SystemCodePage::~SystemCodePage() = default;

char16_t SystemCodePage::convert(const char* bytes, std::size_t size) {
    wchar_t room[2];
    const int units = MultiByteToWideChar(code_page, MB_ERR_INVALID_CHARS, bytes,
                                          static_cast<int>(size), room, 2);
    return units == 1 ? static_cast<char16_t>(room[0]) : u'\0';
}

}  // namespace morandel::formula
