// Finding and counting a text in a text.

#pragma once

#include <cstddef>
#include <string_view>

namespace morandel {

// As text.find(piece, from), but in time proportional to both whatever they hold: a search that
// begins anew at each byte takes hours where both are megabytes of the same letter.
std::size_t find_piece(std::string_view text, std::string_view piece, std::size_t from = 0);

// The same from the start, always by the way that takes such time; the piece must not be empty.
std::size_t find_two_way(std::string_view text, std::string_view piece);

// How often a piece occurs, from the left and not overlapping; an empty piece never does.
std::size_t count_occurrences(std::string_view piece, std::string_view text);

}  // namespace morandel
