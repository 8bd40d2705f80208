// Counting a piece in a text.

#pragma once

#include <cstddef>
#include <string_view>

#include "engine/search.h"

namespace morandel {

// How often a piece occurs, from the left and not overlapping; an empty piece never does.
inline std::size_t count_occurrences(std::string_view piece, std::string_view text) {
    if (piece.empty()) return 0;
    std::size_t count = 0;
    for (std::size_t at = find_piece(text, piece); at != std::string_view::npos;
         at = find_piece(text, piece, at + piece.size())) {
        ++count;
    }
    return count;
}

}  // namespace morandel
