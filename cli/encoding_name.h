// Encodings by any spelling.

#pragma once

#include <optional>
#include <string_view>

namespace morandel::cli {

// "utf-8" or "gbk", for UTF8, utf_8, GB2312, cp936 and the like.
std::optional<std::string_view> find_encoding(std::string_view name);

}  // namespace morandel::cli
