// Bytes and characters of code page 936: no table of the system, no locale.

#pragma once

#include <cstddef>
#include <string_view>

namespace morandel {

constexpr bool is_white_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

constexpr char to_lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr char to_upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// 2 where a lead byte with a byte after it stands at index, else 1.
constexpr std::size_t character_size(std::string_view text, std::size_t index) {
    const auto byte = static_cast<unsigned char>(text[index]);
    return byte >= 0x81 && byte <= 0xFE && index + 1 < text.size() ? 2 : 1;
}

}  // namespace morandel
