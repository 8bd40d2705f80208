// A formula with a mark under the part that is spoken of, as a terminal shows it.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace morandel::cli {

// Two lines, the second without an end. The place is in bytes of code page 936.
std::string picture(std::string_view formula, std::size_t position, std::size_t length);

// Cells that a text takes on a terminal: Chinese characters and full-width forms take two.
std::size_t cells_of(std::string_view utf8);

// The same place in bytes of UTF-8.
std::size_t utf8_position(std::string_view formula, std::size_t position);

}  // namespace morandel::cli
