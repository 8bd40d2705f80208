// Colours where a terminal wants them.

#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace morandel::cli {

enum class Paint { problem, warning, mark, prompt };

// "always", "never", or "auto": on a terminal that has them, unless NO_COLOR is set.
void choose_colors(std::string_view chosen);
bool has_colors(std::FILE* stream);

// The text in its colour where the stream has colours, else as it is.
std::string painted(Paint paint, std::string_view text, std::FILE* stream);

}  // namespace morandel::cli
