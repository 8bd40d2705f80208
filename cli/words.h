// Words of a line that is being typed.

#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace morandel::cli {

// From behind the last byte that ends a name.
inline std::string_view last_word(std::string_view line) {
    const std::size_t end = line.find_last_of(" +-*/^()!,=\"");
    return end == std::string_view::npos ? line : line.substr(end + 1);
}

// What all of them begin with; there is at least one.
inline std::string common_beginning(const std::vector<std::string>& words) {
    std::string common = words.front();
    for (const std::string& word : words) {
        const auto [differs, unused] = std::ranges::mismatch(common, word);
        common.erase(differs, common.end());
    }
    return common;
}

}  // namespace morandel::cli
