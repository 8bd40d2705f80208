// Text of code page 936 from readable literals: gbk<U"缺少操作符"> is a std::string_view of its
// bytes, made by the compiler, whatever the compiler's own execution character set can do. A
// character that the table below lacks does not compile; add its row.

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace morandel {

struct GbkCharacter {
    char32_t unicode;
    std::uint16_t bytes;
};

// clang-format off
inline constexpr GbkCharacter gbk_characters[] = {
    {U'。', 0xA1A3}, {U'一', 0xD2BB}, {U'下', 0xCFC2}, {U'不', 0xB2BB}, {U'个', 0xB8F6},
    {U'中', 0xD6D0}, {U'串', 0xB4AE}, {U'为', 0xCEAA}, {U'义', 0xD2E5}, {U'乘', 0xB3CB},
    {U'书', 0xCAE9}, {U'予', 0xD3E8}, {U'二', 0xB6FE}, {U'于', 0xD3DA}, {U'位', 0xCEBB},
    {U'余', 0xD3E0}, {U'作', 0xD7F7}, {U'值', 0xD6B5}, {U'公', 0xB9AB}, {U'写', 0xD0B4},
    {U'出', 0xB3F6}, {U'函', 0xBAAF}, {U'分', 0xB7D6}, {U'切', 0xC7D0}, {U'到', 0xB5BD},
    {U'前', 0xC7B0}, {U'匹', 0xC6A5}, {U'原', 0xD4AD}, {U'参', 0xB2CE}, {U'反', 0xB7B4},
    {U'发', 0xB7A2}, {U'取', 0xC8A1}, {U'变', 0xB1E4}, {U'号', 0xBAC5}, {U'合', 0xBACF},
    {U'名', 0xC3FB}, {U'后', 0xBAF3}, {U'否', 0xB7F1}, {U'在', 0xD4DA}, {U'型', 0xD0CD},
    {U'够', 0xB9BB}, {U'大', 0xB4F3}, {U'太', 0xCCAB}, {U'始', 0xCABC}, {U'字', 0xD7D6},
    {U'存', 0xB4E6}, {U'定', 0xB6A8}, {U'实', 0xCAB5}, {U'对', 0xB6D4}, {U'小', 0xD0A1},
    {U'少', 0xC9D9}, {U'尾', 0xCEB2}, {U'常', 0xB3A3}, {U'应', 0xD3A6}, {U'度', 0xB6C8},
    {U'式', 0xCABD}, {U'弦', 0xCFD2}, {U'形', 0xD0CE}, {U'忘', 0xCDFC}, {U'或', 0xBBF2},
    {U'所', 0xCBF9}, {U'括', 0xC0A8}, {U'指', 0xD6B8}, {U'换', 0xBBBB}, {U'接', 0xBDD3},
    {U'操', 0xB2D9}, {U'数', 0xCAFD}, {U'整', 0xD5FB}, {U'时', 0xCAB1}, {U'是', 0xCAC7},
    {U'最', 0xD7EE}, {U'有', 0xD3D0}, {U'末', 0xC4A9}, {U'标', 0xB1EA}, {U'核', 0xBACB},
    {U'根', 0xB8F9}, {U'模', 0xC4A3}, {U'正', 0xD5FD}, {U'母', 0xC4B8}, {U'求', 0xC7F3},
    {U'没', 0xC3BB}, {U'法', 0xB7A8}, {U'浮', 0xB8A1}, {U'点', 0xB5E3}, {U'然', 0xC8BB},
    {U'现', 0xCFD6}, {U'生', 0xC9FA}, {U'界', 0xBDE7}, {U'的', 0xB5C4}, {U'目', 0xC4BF},
    {U'直', 0xD6B1}, {U'相', 0xCFE0}, {U'确', 0xC8B7}, {U'空', 0xBFD5}, {U'符', 0xB7FB},
    {U'第', 0xB5DA}, {U'等', 0xB5C8}, {U'算', 0xCBE3}, {U'类', 0xC0E0}, {U'精', 0xBEAB},
    {U'绝', 0xBEF8}, {U'缺', 0xC8B1}, {U'而', 0xB6F8}, {U'能', 0xC4DC}, {U'自', 0xD7D4},
    {U'表', 0xB1ED}, {U'要', 0xD2AA}, {U'解', 0xBDE2}, {U'计', 0xBCC6}, {U'记', 0xBCC7},
    {U'该', 0xB8C3}, {U'误', 0xCEF3}, {U'请', 0xC7EB}, {U'负', 0xB8BA}, {U'赋', 0xB8B3},
    {U'超', 0xB3AC}, {U'越', 0xD4BD}, {U'转', 0xD7AA}, {U'达', 0xB4EF}, {U'过', 0xB9FD},
    {U'运', 0xD4CB}, {U'配', 0xC5E4}, {U'量', 0xC1BF}, {U'错', 0xB4ED}, {U'长', 0xB3A4},
    {U'阶', 0xBDD7}, {U'限', 0xCFDE}, {U'零', 0xC1E3}, {U'非', 0xB7C7}, {U'！', 0xA3A1},
    {U'，', 0xA3AC},
};
// clang-format on

constexpr std::uint16_t gbk_bytes(char32_t unicode) {
    if (unicode < 0x80) return static_cast<std::uint16_t>(unicode);
    const auto* row = std::ranges::find(gbk_characters, unicode, &GbkCharacter::unicode);
    if (row == std::end(gbk_characters)) throw "not in the table";
    return row->bytes;
}

// A literal as a template argument, in code page 936.
template <std::size_t Size>
struct GbkText {
    char bytes[2 * Size]{};
    std::size_t length = 0;

    consteval GbkText(const char32_t (&text)[Size]) {
        for (const char32_t unicode : std::u32string_view(text, Size - 1)) {
            const std::uint16_t pair = gbk_bytes(unicode);
            if (pair > 0xFF) bytes[length++] = static_cast<char>(pair >> 8);
            bytes[length++] = static_cast<char>(pair & 0xFF);
        }
    }
};

template <GbkText Text>
inline constexpr std::string_view gbk{Text.bytes, Text.length};

}  // namespace morandel
