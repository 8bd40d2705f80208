// Between the texts of COM, which are UTF-16, and the library's bytes of code page 936, whatever
// the code page of the process is.

#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>
#include <string_view>

namespace morandel::automation {

constexpr UINT code_page = 936;

// A character that code page 936 does not have; nothing is replaced in silence.
class EncodingError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Throws EncodingError.
std::string to_bytes(std::wstring_view text);

// The caller frees it. Bytes that are no whole character become what the platform puts for them.
// Throws std::bad_alloc.
BSTR to_bstr(std::string_view bytes);

}  // namespace morandel::automation
