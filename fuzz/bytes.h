// Takes a fuzzer's bytes apart into numbers, texts and choices.

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

class Bytes {
  public:
    Bytes(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}

    [[nodiscard]] bool empty() const { return m_size == 0; }

    std::uint8_t byte() {
        if (m_size == 0) return 0;
        --m_size;
        return *m_data++;
    }
    int below(int limit) { return byte() % limit; }

    // A text up to a newline, or to the end.
    std::string line() {
        const auto* end = std::find(m_data, m_data + m_size, '\n');
        std::string text(m_data, end);
        const std::size_t taken = text.size() + (end != m_data + m_size ? 1 : 0);
        m_data += taken;
        m_size -= taken;
        return text;
    }

    double number() {
        std::uint8_t raw[8] = {};
        const std::size_t size = std::min(m_size, sizeof raw);
        std::memcpy(raw, m_data, size);
        m_data += size;
        m_size -= size;
        double value = 0.0;
        std::memcpy(&value, raw, sizeof value);
        return value;
    }

  private:
    const std::uint8_t* m_data;
    std::size_t m_size;
};
