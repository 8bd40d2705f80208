#include <iconv.h>

#include "formula/system_code_page.h"

namespace morandel::formula {
namespace {

// What iconv_open gives for a failure.
iconv_t no_converter() {
    return reinterpret_cast<iconv_t>(-1);  // NOLINT
}

}  // namespace

SystemCodePage::SystemCodePage() : m_handle(iconv_open("UTF-16LE", "CP936")) {
    if (m_handle == no_converter()) m_handle = nullptr;
}

SystemCodePage::~SystemCodePage() {
    if (m_handle != nullptr) iconv_close(m_handle);
}

char16_t SystemCodePage::convert(const char* bytes, std::size_t size) {
    unsigned char unit[2];
    // iconv does not write to its input, whatever its signature says.
    char* in = const_cast<char*>(bytes);
    char* out = reinterpret_cast<char*>(unit);
    std::size_t in_left = size;
    std::size_t out_left = sizeof unit;
    const std::size_t result = iconv(m_handle, &in, &in_left, &out, &out_left);
    if (result != 0 || in_left != 0 || out_left != 0) return 0;
    return static_cast<char16_t>(unit[0] | unit[1] << 8);
}

}  // namespace morandel::formula
