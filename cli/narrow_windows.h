// What Windows gives as UTF-16, as UTF-8.

#pragma once

#include <windows.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace morandel::cli {

inline std::string narrow(std::wstring_view text) {
    const int size = static_cast<int>(text.size());
    const int room =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(room), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), size, bytes.data(), room, nullptr, nullptr);
    return bytes;
}

}  // namespace morandel::cli
