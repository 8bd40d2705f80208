// Between the terminal's UTF-8 and the library's code page 936, by the library's converter.

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/messages.h"

namespace morandel::cli {

// Says which character, or which byte, has no counterpart.
class EncodingError : public Problem {
  public:
    using Problem::Problem;
};

// Which some programs write before UTF-8.
inline constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

bool is_utf8(std::string_view text);

// The characters of a text in turn, in both; a byte that is no UTF-8 is one of them.
struct Character {
    std::string_view utf8;
    std::string gbk;  // empty where there is none
};
std::vector<Character> characters_of(std::string_view utf8);

std::string to_gbk(std::string_view utf8);
std::string to_utf8(std::string_view gbk);

// By its mark.
bool begins_as_utf16(std::string_view bytes);

}  // namespace morandel::cli
