#include "cli/encoding.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <system_error>

namespace morandel::cli {
namespace {

class Converter {
  public:
    Converter(const char* to, const char* from) : m_handle(iconv_open(to, from)) {
        if (failed()) throw std::system_error(errno, std::generic_category(), "iconv_open");
    }
    ~Converter() { iconv_close(m_handle); }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    // Converts what it can; rest is left with what it could not.
    std::string convert(std::string_view& rest) {
        std::string converted;
        std::array<char, 4096> room{};
        iconv(m_handle, nullptr, nullptr, nullptr, nullptr);  // begins anew
        while (!rest.empty()) {
            // iconv does not write to its input, whatever its signature says.
            char* in = const_cast<char*>(rest.data());
            std::size_t in_left = rest.size();
            char* out = room.data();
            std::size_t out_left = room.size();
            const std::size_t result = iconv(m_handle, &in, &in_left, &out, &out_left);
            const int problem = errno;
            converted.append(room.data(), room.size() - out_left);
            rest = {in, in_left};
            if (result == static_cast<std::size_t>(-1) && problem != E2BIG) break;
        }
        return converted;
    }

  private:
    [[nodiscard]] bool failed() const {
        // NOLINTNEXTLINE: what iconv_open gives for a failure
        return m_handle == reinterpret_cast<iconv_t>(-1);
    }

    iconv_t m_handle;
};

std::size_t utf8_character_size(std::string_view text) {
    const auto first = static_cast<unsigned char>(text.front());
    const std::size_t size = first < 0xC0 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    return std::min(size, text.size());
}

std::string byte_name(char c) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "0x%02X", static_cast<unsigned char>(c));
    return text.data();
}

// Alike in both.
bool is_ascii(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

std::string to_gbk(std::string_view utf8) {
    if (is_ascii(utf8)) return std::string(utf8);
    static Converter converter("CP936", "UTF-8");
    std::string gbk = converter.convert(utf8);
    if (utf8.empty()) return gbk;
    const std::string character{utf8.substr(0, utf8_character_size(utf8))};
    // What is no UTF-8 itself is named by its byte.
    std::string_view checked = character;
    (void)Converter("UTF-16LE", "UTF-8").convert(checked);
    if (!checked.empty()) throw EncodingError("byte " + byte_name(character[0]) + " is not UTF-8");
    throw EncodingError("code page 936 has no character '" + character + "'");
}

std::string to_utf8(std::string_view gbk) {
    if (is_ascii(gbk)) return std::string(gbk);
    static Converter converter("UTF-8", "CP936");
    std::string utf8 = converter.convert(gbk);
    if (gbk.empty()) return utf8;
    throw EncodingError("byte " + byte_name(gbk[0]) +
                        " is no whole character of code page 936, after '" + utf8 + "'");
}

}  // namespace morandel::cli
