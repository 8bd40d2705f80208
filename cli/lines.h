// Reads text by lines of bounded length, so that no input can fill the memory.

#pragma once

#include <cstddef>
#include <istream>
#include <string>
#include <string_view>

#include "cli/messages.h"

namespace morandel::cli {

constexpr std::size_t longest_line = std::size_t{64} * 1024;

constexpr std::size_t endless_line = std::size_t{64} * 1024 * 1024;

// Reads the next line without its line end (LF or CR LF); false at the end of the input. Of a
// longer line only the first longest_line + 1 bytes are kept. Throws Problem where a
// line does not end, such as on /dev/zero.
inline bool read_line(std::istream& in, std::string& line) {
    line.clear();
    std::streambuf* buffer = in.rdbuf();
    std::size_t size = 0;
    for (int c = buffer->sbumpc(); c != std::char_traits<char>::eof(); c = buffer->sbumpc()) {
        if (++size > endless_line) throw Problem(say("a line does not end within 64 MiB"));
        if (c == '\n') break;
        if (line.size() <= longest_line) line += static_cast<char>(c);
    }
    if (line.ends_with('\r')) line.pop_back();
    return size > 0;
}

// Without the white space at both ends.
inline std::string_view trim(std::string_view text) {
    constexpr std::string_view white_space = " \t\r\n\v\f";
    const std::size_t first = text.find_first_not_of(white_space);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(white_space) - first + 1);
}

}  // namespace morandel::cli
