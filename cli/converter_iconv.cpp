#include <iconv.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <system_error>

#include "cli/converter.h"

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

}  // namespace

std::string convert(Direction direction, std::string_view& rest) {
    if (direction == Direction::utf8_to_gbk) {
        static Converter to_gbk("CP936", "UTF-8");
        return to_gbk.convert(rest);
    }
    static Converter to_utf8("UTF-8", "CP936");
    return to_utf8.convert(rest);
}

bool is_utf8(std::string_view text) {
    std::string_view rest = text;
    (void)Converter("UTF-16LE", "UTF-8").convert(rest);
    return rest.empty();
}

}  // namespace morandel::cli
