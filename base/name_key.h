// Names made comparable and hashed by a few words of machine, not by their bytes.

#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace morandel {

template <class Integer>
constexpr std::uint64_t read_bytes(const char* bytes) {
    std::array<char, sizeof(Integer)> copy{};
    std::copy_n(bytes, sizeof(Integer), copy.data());
    return std::bit_cast<Integer>(copy);
}

// Eight bytes with 'A' to 'Z' in lower case.
constexpr std::uint64_t lower_bytes(std::uint64_t bytes) {
    constexpr std::uint64_t each = 0x0101010101010101;
    const std::uint64_t low = bytes & 0x7F * each;  // so that no byte carries into the next
    const std::uint64_t from_a = low + (0x80 - 'A') * each;
    const std::uint64_t past_z = low + (0x7F - 'Z') * each;
    return bytes | (from_a & ~past_z & ~bytes & 0x80 * each) >> 2;
}

// Names of up to 16 bytes are the same where their keys are.
class NameKey {
  public:
    constexpr NameKey() = default;
    constexpr explicit NameKey(std::string_view name) : m_size(name.size()) {
        const char* begin = name.data();
        if (m_size >= 8) {
            m_first = read_bytes<std::uint64_t>(begin);
            m_last = read_bytes<std::uint64_t>(begin + m_size - 8);
        } else if (m_size >= 4) {
            m_first = read_bytes<std::uint32_t>(begin);
            m_last = read_bytes<std::uint32_t>(begin + m_size - 4);
        } else if (m_size > 0) {
            m_first = static_cast<unsigned char>(begin[0]);
            m_last = read_bytes<std::uint8_t>(begin + m_size / 2) << 8 |
                     read_bytes<std::uint8_t>(begin + m_size - 1);
        }
    }

    constexpr bool operator==(const NameKey&) const = default;
    // The key of the same name with its letters in lower case.
    [[nodiscard]] constexpr NameKey lower() const {
        NameKey key = *this;
        key.m_first = lower_bytes(m_first);
        key.m_last = lower_bytes(m_last);
        return key;
    }

    // Seven bits, for a table of 128.
    static constexpr std::size_t hashes = 128;
    [[nodiscard]] constexpr std::size_t hash() const {
        constexpr std::uint64_t odd = 0x9E3779B97F4A7C15;
        return static_cast<std::size_t>(((m_first ^ m_size) * odd + m_last) * odd >> 57);
    }

  private:
    std::size_t m_size = 0;
    std::uint64_t m_first = 0;  // the first and last eight bytes; of less than eight the first and
    std::uint64_t m_last = 0;   // last four, or all
};

}  // namespace morandel
