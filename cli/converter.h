// The system's own converter between UTF-8 and code page 936.

#pragma once

#include <string>
#include <string_view>

namespace morandel::cli {

enum class Direction { utf8_to_gbk, gbk_to_utf8 };

// Converts what it can; rest is left with what it could not.
std::string convert(Direction direction, std::string_view& rest);

bool is_utf8(std::string_view text);

}  // namespace morandel::cli
