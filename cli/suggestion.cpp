#include "cli/suggestion.h"

#include <algorithm>
#include <cstddef>

namespace morandel::cli {
namespace {

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// Letters added, left out, replaced or exchanged with their neighbour, whatever their case.
std::size_t changes(std::string_view from, std::string_view to) {
    const std::size_t width = to.size() + 1;
    std::vector<std::size_t> table((from.size() + 1) * width);
    const auto at = [&](std::size_t i, std::size_t j) -> std::size_t& {
        return table[i * width + j];
    };
    for (std::size_t i = 0; i <= from.size(); ++i) at(i, 0) = i;
    for (std::size_t j = 0; j <= to.size(); ++j) at(0, j) = j;
    for (std::size_t i = 1; i <= from.size(); ++i) {
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const bool same = lower(from[i - 1]) == lower(to[j - 1]);
            at(i, j) =
                std::min({at(i - 1, j) + 1, at(i, j - 1) + 1, at(i - 1, j - 1) + (same ? 0U : 1U)});
            const bool exchanged = i > 1 && j > 1 && lower(from[i - 1]) == lower(to[j - 2]) &&
                                   lower(from[i - 2]) == lower(to[j - 1]);
            if (exchanged) at(i, j) = std::min(at(i, j), at(i - 2, j - 2) + 1);
        }
    }
    return table.back();
}

}  // namespace

std::string closest(std::string_view word, const std::vector<std::string>& words) {
    constexpr std::size_t longest = 40;
    if (word.size() > longest) return {};
    const std::size_t most = word.size() < 3 ? 0 : word.size() < 5 ? 1 : 2;
    std::string best;
    std::size_t fewest = most + 1;
    for (const std::string& other : words) {
        if (other.size() > longest) continue;
        if (const std::size_t needed = changes(word, other); needed < fewest) {
            fewest = needed;
            best = other;
        }
    }
    return best;
}

}  // namespace morandel::cli
