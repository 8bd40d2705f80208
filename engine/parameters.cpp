#include "engine/parameters.h"

#include <algorithm>
#include <cstring>

namespace morandel {
namespace {

template <class Integer>
std::uint64_t load(const char* bytes) {
    Integer value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

// Of a name's size and its first and last eight bytes: the time does not depend on the length.
std::size_t place(std::string_view name) {
    const std::size_t size = name.size();
    std::uint64_t first = 0;
    std::uint64_t last = 0;
    if (size >= 8) {
        first = load<std::uint64_t>(name.data());
        last = load<std::uint64_t>(name.data() + size - 8);
    } else if (size >= 4) {
        first = load<std::uint32_t>(name.data());
        last = load<std::uint32_t>(name.data() + size - 4);
    } else if (size > 0) {
        first = load<std::uint8_t>(name.data());
        last = load<std::uint8_t>(name.data() + size / 2) << 8 |
               load<std::uint8_t>(name.data() + size - 1);
    }
    constexpr std::uint64_t odd = 0x9E3779B97F4A7C15;
    return static_cast<std::size_t>(((first ^ size) * odd + last) * odd >> 57);
}

}  // namespace

int Parameters::find(std::string_view name) const {
    if (m_indexed != m_generation) index();
    for (std::size_t at = place(name); m_index[at] != 0; at = (at + 1) % index_size) {
        const int slot = m_index[at] - 1;
        if (m_slots[static_cast<std::size_t>(slot)].name == name) return slot;
    }
    return -1;
}

void Parameters::index() const {
    static_assert(index_size > 2 * most);
    m_index.fill(0);
    const int count = std::min(m_count, static_cast<int>(m_slots.size()));
    for (int slot = 0; slot < count; ++slot) {
        std::size_t at = place(m_slots[static_cast<std::size_t>(slot)].name);
        while (m_index[at] != 0) at = (at + 1) % index_size;
        m_index[at] = static_cast<std::uint8_t>(slot + 1);
    }
    m_indexed = m_generation;
}

}  // namespace morandel
