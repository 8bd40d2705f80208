#include "cli/picture.h"

#include <algorithm>

#include "cli/encoding.h"

namespace morandel::cli {
namespace {

constexpr std::size_t margin = 4;

// What cannot be shown, such as half a character, becomes a question mark; line ends become blanks.
std::string shown(std::string_view gbk) {
    std::string text;
    try {
        text = to_utf8(gbk);
    } catch (const EncodingError&) {
        text.assign(gbk.size(), '?');
    }
    std::ranges::replace_if(
        text, [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    return text;
}

}  // namespace

std::size_t cells_of(std::string_view utf8) {
    std::size_t cells = 0;
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x80 && byte < 0xC0) continue;  // not the first byte of a character
        // From U+3000 on, where UTF-8 begins with E3.
        cells += byte >= 0xE3 ? 2 : 1;
    }
    return cells;
}

std::size_t utf8_position(std::string_view formula, std::size_t position) {
    return shown(formula.substr(0, position)).size();
}

std::string picture(std::string_view formula, std::size_t position, std::size_t length) {
    const std::size_t before = cells_of(shown(formula.substr(0, position)));
    const std::size_t marked =
        cells_of(shown(formula.substr(std::min(position, formula.size()), length)));
    std::string mark = "^";
    if (marked > 1) mark.append(marked - 1, '~');
    return std::string(margin, ' ') + shown(formula) + '\n' + std::string(margin + before, ' ') +
           mark;
}

}  // namespace morandel::cli
