#include "automation/code_page.h"

#include <windows.h>

#include <oleauto.h>

#include <cstdio>
#include <limits>
#include <new>

namespace morandel::automation {
namespace {

int whole_size(std::size_t size) {
    if (size > static_cast<std::size_t>(std::numeric_limits<int>::max() / 2))
        throw std::bad_alloc();
    return static_cast<int>(size);
}

// How many of the characters make one: two for a pair of surrogates.
std::size_t character_size(std::wstring_view text) {
    return text.size() > 1 && IS_SURROGATE_PAIR(text[0], text[1]) ? 2 : 1;
}

unsigned code_point(std::wstring_view character) {
    if (character.size() == 1) return character[0];
    return 0x10000U + ((character[0] & 0x3FFU) << 10) + (character[1] & 0x3FFU);
}

bool convert(std::wstring_view text, std::string& bytes) {
    BOOL replaced = FALSE;
    const int room = WideCharToMultiByte(code_page, WC_NO_BEST_FIT_CHARS, text.data(),
                                         whole_size(text.size()), nullptr, 0, nullptr, &replaced);
    bytes.resize(static_cast<std::size_t>(room));
    const int size =
        WideCharToMultiByte(code_page, WC_NO_BEST_FIT_CHARS, text.data(), whole_size(text.size()),
                            bytes.data(), room, nullptr, &replaced);
    return size > 0 && replaced == FALSE;
}

}  // namespace

std::string to_bytes(std::wstring_view text) {
    std::string bytes;
    if (text.empty() || convert(text, bytes)) return bytes;
    while (!text.empty()) {
        const std::wstring_view character = text.substr(0, character_size(text));
        if (!convert(character, bytes)) {
            char problem[64];
            std::snprintf(problem, sizeof problem, "code page 936 has no character U+%04X",
                          code_point(character));
            throw EncodingError(problem);
        }
        text.remove_prefix(character.size());
    }
    throw EncodingError("the text does not fit code page 936");
}

BSTR to_bstr(std::string_view bytes) {
    const int size = whole_size(bytes.size());
    const int room =
        size == 0 ? 0 : MultiByteToWideChar(code_page, 0, bytes.data(), size, nullptr, 0);
    BSTR text = SysAllocStringLen(nullptr, static_cast<UINT>(room));
    if (text == nullptr) throw std::bad_alloc();
    if (room > 0) MultiByteToWideChar(code_page, 0, bytes.data(), size, text, room);
    return text;
}

}  // namespace morandel::automation
