// Between UTF-8 and the library's bytes of code page 936. The system says which bytes are which
// character, once a process; after that it is a table, which threads share.

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "formula/report.h"

namespace morandel::formula {

// What of a text has no counterpart.
struct Inconvertible {
    int reason;          // one of MORANDEL_REASON_...
    std::size_t offset;  // in that text
    std::size_t size;
};

// Both write what they can to the end of a text.
std::optional<Inconvertible> to_bytes(std::string_view utf8, std::string& bytes);
std::optional<Inconvertible> to_utf8(std::string_view bytes, std::string& utf8);

// Whether it is the same bytes either way.
bool is_ascii(std::string_view text);

// The same bytes, without a copy where both are alike; else they lie in the room.
std::string_view bytes_of(std::string_view utf8, std::string& room,
                          std::optional<Inconvertible>& problem);

// Of a text that does not convert; it names the character or the byte and tells its position.
Report report_of_text(const Inconvertible& problem, std::string_view text);

// The position of bytes of code page 936 in the UTF-8 that they are converted from. A place within
// a character counts as its beginning.
morandel_position position_in_utf8(Extent extent, std::string_view bytes, std::string_view utf8);
// The position in themselves.
morandel_position position_in_bytes(Extent extent, std::string_view bytes);

}  // namespace morandel::formula
