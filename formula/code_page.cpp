#include "formula/code_page.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "base/everlasting.h"
#include "formula/system_code_page.h"

namespace morandel::formula {
namespace {

constexpr std::size_t codes = 0x10000;

struct Tables {
    std::array<char16_t, codes> to_unicode{};     // by bytes; 0 for none
    std::array<std::uint16_t, codes> to_bytes{};  // by character; 0 for none
    bool is_known = false;

    Tables() {
        SystemCodePage system;
        is_known = system.is_known();
        if (!is_known) return;
        enter_row(system, 0, 0x80);
        for (unsigned lead = 0x81; lead < 0xFF; ++lead) enter_row(system, lead, 0x40);
    }

  private:
    // Lead 0 stands for single bytes. Where two codes are one character, the first is its code.
    void enter_row(SystemCodePage& system, unsigned lead, unsigned first) {
        for (unsigned second = first; second < 0x100; ++second) {
            const char pair[] = {static_cast<char>(lead), static_cast<char>(second)};
            const char16_t character =
                lead == 0 ? system.convert(pair + 1, 1) : system.convert(pair, 2);
            const unsigned code = lead << 8 | second;
            to_unicode[code] = character;
            if (character == 0 || to_bytes[character] != 0) continue;
            to_bytes[character] = static_cast<std::uint16_t>(code);
        }
    }
};

const Tables& tables() {
    static const Everlasting<Tables> made;
    return made.value;
}

unsigned byte_at(std::string_view text, std::size_t at) {
    return static_cast<unsigned char>(text[at]);
}

std::size_t count_ascii(std::string_view text) {
    std::size_t count = 0;
    std::uint64_t eight = 0;
    constexpr std::uint64_t top_bits = 0x8080808080808080;
    std::array<std::uint64_t, 4> many{};
    for (; count + sizeof many <= text.size(); count += sizeof many) {
        std::memcpy(many.data(), text.data() + count, sizeof many);
        if (((many[0] | many[1] | many[2] | many[3]) & top_bits) != 0) break;
    }
    for (; count + sizeof eight <= text.size(); count += sizeof eight) {
        std::memcpy(&eight, text.data() + count, sizeof eight);
        if ((eight & top_bits) != 0) break;
    }
    while (count < text.size() && byte_at(text, count) < 0x80) ++count;
    return count;
}

struct Character {
    char32_t code = 0;
    std::size_t size = 0;  // in bytes; 0 where there is none
};

// At an offset that is not the end. Only what is shortest, no surrogate and in range is UTF-8.
Character utf8_at(std::string_view text, std::size_t at) {
    const unsigned first = byte_at(text, at);
    if (first < 0x80) return {first, 1};
    const std::size_t size = first < 0xC0 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    if (size == 0 || first > 0xF4 || text.size() - at < size) return {};
    char32_t code = first & (0x7FU >> size);
    for (std::size_t i = 1; i < size; ++i) {
        const unsigned next = byte_at(text, at + i);
        if ((next & 0xC0U) != 0x80) return {};
        code = code << 6 | (next & 0x3FU);
    }
    constexpr std::array<char32_t, 5> least = {0, 0, 0x80, 0x800, 0x10000};
    if (code < least[size] || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) return {};
    return {code, size};
}

void append_utf8(char16_t code, std::string& text) {
    const unsigned bits = code;
    if (bits < 0x800) {
        text += static_cast<char>(0xC0 | bits >> 6);
    } else {
        text += static_cast<char>(0xE0 | bits >> 12);
        text += static_cast<char>(0x80 | (bits >> 6 & 0x3F));
    }
    text += static_cast<char>(0x80 | (bits & 0x3F));
}

// Of the character of code page 936 at an offset.
std::size_t size_in_bytes(std::string_view bytes, std::size_t at) {
    const unsigned first = byte_at(bytes, at);
    return first > 0x80 && first < 0xFF && at + 1 < bytes.size() ? 2 : 1;
}

std::size_t size_in_utf8(std::string_view text, std::size_t at) {
    return std::max<std::size_t>(utf8_at(text, at).size, 1);
}

// Walks two texts of the same characters side by side; sizes say how long each character is.
template <class SizeInBytes, class SizeInText>
morandel_position walk(Extent extent, std::string_view bytes, SizeInBytes size_in_these,
                       std::string_view text, SizeInText size_in_text) {
    std::size_t at = 0;
    std::size_t text_at = 0;
    std::size_t count = 0;
    const auto reach = [&](std::size_t offset, bool is_end) {
        while (at < bytes.size() && text_at < text.size()) {
            const std::size_t next = at + size_in_these(bytes, at);
            // An end within a character is that character's end.
            if (at >= offset || (!is_end && next > offset)) break;
            at = next;
            text_at += size_in_text(text, text_at);
            ++count;
        }
    };
    reach(extent.begin, false);
    morandel_position position{text_at, count, 0, 0};
    reach(extent.end, true);
    position.bytes = text_at - position.byte;
    position.characters = count - position.character;
    return position;
}

}  // namespace

std::optional<Inconvertible> to_bytes(std::string_view utf8, std::string& bytes) {
    std::size_t at = count_ascii(utf8);
    bytes.append(utf8.substr(0, at));
    if (at == utf8.size()) return std::nullopt;
    const Tables& table = tables();
    if (!table.is_known) return Inconvertible{MORANDEL_REASON_NO_CONVERTER, at, 0};
    while (at < utf8.size()) {
        const auto [code, size] = utf8_at(utf8, at);
        if (size == 0) return Inconvertible{MORANDEL_REASON_NOT_UTF8, at, 1};
        if (code < 0x80) {
            bytes += utf8[at];
        } else {
            const unsigned pair = code < codes ? table.to_bytes[code] : 0U;
            if (pair == 0) return Inconvertible{MORANDEL_REASON_NO_CHARACTER, at, size};
            if (pair > 0xFF) bytes += static_cast<char>(pair >> 8);
            bytes += static_cast<char>(pair & 0xFF);
        }
        at += size;
    }
    return std::nullopt;
}

std::optional<Inconvertible> to_utf8(std::string_view bytes, std::string& utf8) {
    std::size_t at = count_ascii(bytes);
    utf8.append(bytes.substr(0, at));
    if (at == bytes.size()) return std::nullopt;
    const Tables& table = tables();
    if (!table.is_known) return Inconvertible{MORANDEL_REASON_NO_CONVERTER, at, 0};
    while (at < bytes.size()) {
        const unsigned first = byte_at(bytes, at);
        const std::size_t size = size_in_bytes(bytes, at);
        if (first < 0x80) {
            utf8 += bytes[at];
        } else {
            const std::size_t code = size == 1 ? first : first << 8 | byte_at(bytes, at + 1);
            const char16_t character = table.to_unicode[code];
            if (character == 0) return Inconvertible{MORANDEL_REASON_HALF_CHARACTER, at, 1};
            append_utf8(character, utf8);
        }
        at += size;
    }
    return std::nullopt;
}

bool is_ascii(std::string_view text) { return count_ascii(text) == text.size(); }

std::string_view bytes_of(std::string_view utf8, std::string& room,
                          std::optional<Inconvertible>& problem) {
    problem.reset();
    if (count_ascii(utf8) == utf8.size()) return utf8;
    room.clear();
    problem = to_bytes(utf8, room);
    return room;
}

Report report_of_text(const Inconvertible& problem, std::string_view text) {
    std::string about(text.substr(problem.offset, problem.size));
    if (problem.reason != MORANDEL_REASON_NO_CHARACTER) {
        std::array<char, 8> name{};
        std::snprintf(name.data(), name.size(), "0x%02X", byte_at(text, problem.offset));
        about = name.data();
    }
    Report report = report_of_reason(problem.reason, about);
    const Extent extent{problem.offset, problem.offset + problem.size};
    // The bytes of a result are not the caller's, so there is no position in them to tell.
    if (problem.reason != MORANDEL_REASON_HALF_CHARACTER) {
        report.position = walk(extent, text, size_in_utf8, text, size_in_utf8);
    }
    return report;
}

morandel_position position_in_utf8(Extent extent, std::string_view bytes, std::string_view utf8) {
    return walk(extent, bytes, size_in_bytes, utf8, size_in_utf8);
}

morandel_position position_in_bytes(Extent extent, std::string_view bytes) {
    return walk(extent, bytes, size_in_bytes, bytes, size_in_bytes);
}

}  // namespace morandel::formula
