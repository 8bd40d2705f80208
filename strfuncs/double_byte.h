// Characters of code page 936 in a text of bytes.

#pragma once

#include <cstddef>
#include <string_view>

namespace morandel {

// 2 where a lead byte with a byte after it stands at index, else 1.
constexpr std::size_t character_size(std::string_view text, std::size_t index) {
    const auto byte = static_cast<unsigned char>(text[index]);
    return byte >= 0x81 && byte <= 0xFE && index + 1 < text.size() ? 2 : 1;
}

}  // namespace morandel
