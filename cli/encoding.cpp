#include "cli/encoding.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>

#include "cli/converter.h"

namespace morandel::cli {
namespace {

std::size_t utf8_character_size(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    const std::size_t size = first < 0xC0 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    return std::min(size, text.size());
}

std::string byte_name(char c) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "0x%02X", static_cast<unsigned char>(c));
    return text.data();
}

// Alike in both.
bool is_ascii(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

std::string to_gbk(std::string_view utf8) {
    if (is_ascii(utf8)) return std::string(utf8);
    std::string gbk = convert(Direction::utf8_to_gbk, utf8);
    if (utf8.empty()) return gbk;
    const std::string character{utf8.substr(0, utf8_character_size(utf8))};
    // What is no UTF-8 itself is named by its byte.
    if (!is_utf8(character))
        throw EncodingError("byte " + byte_name(character[0]) + " is not UTF-8");
    throw EncodingError("code page 936 has no character '" + character + "'");
}

std::string to_utf8(std::string_view gbk) {
    if (is_ascii(gbk)) return std::string(gbk);
    std::string utf8 = convert(Direction::gbk_to_utf8, gbk);
    if (gbk.empty()) return utf8;
    throw EncodingError("byte " + byte_name(gbk[0]) +
                        " is no whole character of code page 936, after '" + utf8 + "'");
}

}  // namespace morandel::cli
