#include <windows.h>

#include <cstddef>

#include "cli/converter.h"

namespace morandel::cli {
namespace {

constexpr UINT gbk = 936;

bool widen(UINT code_page, std::string_view text, std::wstring& wide) {
    const int size = static_cast<int>(text.size());
    const int room =
        MultiByteToWideChar(code_page, MB_ERR_INVALID_CHARS, text.data(), size, nullptr, 0);
    wide.resize(static_cast<std::size_t>(room));
    return MultiByteToWideChar(code_page, MB_ERR_INVALID_CHARS, text.data(), size, wide.data(),
                               room) > 0;
}

bool narrow(UINT code_page, std::wstring_view wide, std::string& text) {
    const bool is_gbk = code_page == gbk;
    const DWORD flags = is_gbk ? WC_NO_BEST_FIT_CHARS : 0;
    BOOL replaced = FALSE;
    BOOL* const replaces = is_gbk ? &replaced : nullptr;
    const int size = static_cast<int>(wide.size());
    const int room =
        WideCharToMultiByte(code_page, flags, wide.data(), size, nullptr, 0, nullptr, replaces);
    text.resize(static_cast<std::size_t>(room));
    return WideCharToMultiByte(code_page, flags, wide.data(), size, text.data(), room, nullptr,
                               replaces) > 0 &&
           replaced == FALSE;
}

bool convert_whole(UINT from, UINT to, std::string_view text, std::string& converted) {
    std::wstring wide;
    return widen(from, text, wide) && narrow(to, wide, converted);
}

std::size_t character_size(UINT code_page, std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    std::size_t size = 1;
    if (code_page == gbk) {
        if (first > 0x80) size = 2;
    } else if (first >= 0xC0) {
        size = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    }
    return size < text.size() ? size : text.size();
}

}  // namespace

std::string convert(Direction direction, std::string_view& rest) {
    const UINT from = direction == Direction::utf8_to_gbk ? UINT{CP_UTF8} : gbk;
    const UINT to = direction == Direction::utf8_to_gbk ? gbk : UINT{CP_UTF8};
    std::string converted;
    if (convert_whole(from, to, rest, converted)) {
        rest = {};
        return converted;
    }
    std::string beginning;
    while (!rest.empty()) {
        const std::size_t size = character_size(from, rest);
        if (!convert_whole(from, to, rest.substr(0, size), converted)) break;
        beginning += converted;
        rest.remove_prefix(size);
    }
    return beginning;
}

bool is_utf8(std::string_view text) {
    std::wstring wide;
    return text.empty() || widen(CP_UTF8, text, wide);
}

}  // namespace morandel::cli
