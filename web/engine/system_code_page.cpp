// For systems that know no code pages: the characters as another system had them when this was
// built.

#include <cstdint>

#include "formula/system_code_page.h"

namespace morandel::formula {
namespace {

constexpr unsigned singles = 0x80;
constexpr unsigned first_lead = 0x81;
constexpr unsigned first_second = 0x40;
constexpr unsigned seconds = 0xBF;

// Of single bytes from 0x80 on, then by first byte and second byte; 0 for none.
constexpr std::uint16_t characters[] = {
#include "code_page_characters.inc"
};

unsigned byte(char c) { return static_cast<unsigned char>(c); }

}  // namespace

SystemCodePage::SystemCodePage() : m_handle(this) {}

SystemCodePage::~SystemCodePage() = default;

char16_t SystemCodePage::convert(const char* bytes, std::size_t size) {
    const unsigned lead = byte(bytes[0]);
    if (lead < singles) return static_cast<char16_t>(lead);
    if (size == 1) return characters[lead - singles];
    const unsigned second = byte(bytes[1]);
    if (lead < first_lead || lead == 0xFF || second < first_second || second == 0xFF) return 0;
    return characters[singles + (lead - first_lead) * seconds + (second - first_second)];
}

}  // namespace morandel::formula
