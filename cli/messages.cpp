#include "cli/messages.h"

#include <cstddef>

namespace morandel::cli {
namespace {

// By the first byte of its UTF-8.
bool is_chinese(char first) {
    return static_cast<unsigned char>(first) >= 0xE4 && static_cast<unsigned char>(first) <= 0xE9;
}

bool ends_chinese(std::string_view text) {
    constexpr std::size_t size = 3;
    return text.size() >= size && is_chinese(text[text.size() - size]);
}

// No blank stands between two words of Chinese where both are the command's own.
std::string fill_one(std::string_view sentence, std::span<const Filling> fillings,
                     const std::string& (Filling::*text)() const) {
    std::string filled;
    for (std::size_t i = 0; i < sentence.size(); ++i) {
        const bool is_place =
            sentence[i] == '{' && i + 2 < sentence.size() && sentence[i + 2] == '}';
        if (!is_place) {
            filled += sentence[i];
            continue;
        }
        const Filling& all = fillings[static_cast<std::size_t>(sentence[i + 1] - '0')];
        const std::string& filling = (all.*text)();
        i += 2;
        const std::string_view rest = sentence.substr(i + 1);
        const bool is_quoted = rest.starts_with('\'') || rest.starts_with("”");
        const bool is_own = all.english() != all.chinese();
        const bool follows_chinese =
            filled.ends_with(' ') &&
            ends_chinese(std::string_view(filled).substr(0, filled.size() - 1));
        if (is_own && follows_chinese && is_chinese(filling[0])) filled.pop_back();
        filled += is_quoted ? shortened(filling) : filling;
        const bool is_before_chinese = rest.size() > 1 && rest[0] == ' ' && is_chinese(rest[1]);
        if (is_own && is_before_chinese && ends_chinese(filling)) ++i;
    }
    return filled;
}

}  // namespace

std::string shortened(std::string_view text) {
    constexpr std::size_t most = 60;
    std::size_t characters = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool begins_character = (static_cast<unsigned char>(text[i]) & 0xC0U) != 0x80;
        const bool is_enough = (begins_character && ++characters > most) || i >= 4 * most;
        if (is_enough) return std::string(text.substr(0, i)) + "...";
    }
    return std::string(text);
}

Message fill(const Phrase& phrase, std::span<const Filling> fillings) {
    return {fill_one(phrase.english, fillings, &Filling::english),
            fill_one(phrase.chinese, fillings, &Filling::chinese)};
}

}  // namespace morandel::cli
