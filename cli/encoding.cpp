#include "cli/encoding.h"

#include <algorithm>
#include <utility>

#include "formula/code_page.h"

namespace morandel::cli {

bool begins_as_utf16(std::string_view bytes) {
    return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
}
namespace {

// Alike in both.
bool is_ascii(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

Message message_of(const formula::Inconvertible& problem, std::string_view text) {
    formula::Report report = formula::report_of_text(problem, text);
    return {std::move(report.english), std::move(report.message)};
}

}  // namespace

bool is_utf8(std::string_view text) {
    std::string gbk;
    while (const auto problem = formula::to_bytes(text, gbk)) {
        if (problem->reason == MORANDEL_REASON_NOT_UTF8) return false;
        text.remove_prefix(problem->offset + problem->size);
    }
    return true;
}

std::vector<Character> characters_of(std::string_view utf8) {
    std::vector<Character> characters;
    while (!utf8.empty()) {
        std::size_t size = 1;
        const auto goes_on = [&](char c) {
            return (static_cast<unsigned char>(c) & 0xC0U) == 0x80;
        };
        while (static_cast<unsigned char>(utf8[0]) >= 0xC0 && size < utf8.size() &&
               goes_on(utf8[size])) {
            ++size;
        }
        Character character{utf8.substr(0, size), {}};
        if (const auto problem = formula::to_bytes(character.utf8, character.gbk)) {
            const bool is_byte = problem->reason == MORANDEL_REASON_NOT_UTF8;
            character = {utf8.substr(0, is_byte ? 1 : size), {}};
        }
        utf8.remove_prefix(character.utf8.size());
        characters.push_back(std::move(character));
    }
    return characters;
}

std::string to_gbk(std::string_view utf8) {
    if (is_ascii(utf8)) return std::string(utf8);
    std::string gbk;
    const auto problem = formula::to_bytes(utf8, gbk);
    if (problem) throw EncodingError(message_of(*problem, utf8));
    return gbk;
}

std::string to_utf8(std::string_view gbk) {
    if (is_ascii(gbk)) return std::string(gbk);
    std::string utf8;
    const auto problem = formula::to_utf8(gbk, utf8);
    if (!problem) return utf8;
    const Message message = message_of(*problem, gbk);
    throw EncodingError(utf8.empty() ? message : say("{0}, after '{1}'", message, utf8));
}

}  // namespace morandel::cli
