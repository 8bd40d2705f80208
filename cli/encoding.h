// Between the terminal's UTF-8 and the library's code page 936, by the system's own converter.

#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace morandel::cli {

// Says which character, or which byte, has no counterpart.
class EncodingError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

std::string to_gbk(std::string_view utf8);
std::string to_utf8(std::string_view gbk);

}  // namespace morandel::cli
