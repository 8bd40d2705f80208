#include "engine/parameters.h"

#include <algorithm>

#include "base/floating_point.h"

namespace morandel {

// Where one is added at a time, several are.
void Parameters::add_slots(std::size_t wanted) {
    const std::size_t before = m_slots.size();
    m_slots.resize(std::clamp(2 * before, wanted, std::size_t{most}));
    for (std::size_t slot = before; slot < m_slots.size(); ++slot) {
        m_registers.set(slot, {0.0, {}, type_number});
    }
    // Short texts have moved.
    for (std::size_t slot = 0; slot < before; ++slot) {
        if (is_text(slot)) m_registers.set(slot, {0.0, m_slots[slot].text, type_text});
    }
}

void Parameters::rename(std::size_t slot, const std::string& name, ResultType type) {
    if (static_cast<int>(slot) < m_indexed) {
        m_indexed = 0;
        m_index.fill(0);
    }
    m_slots[slot].name = name;
    ++m_generation;
    if (m_registers.kind(slot) == type) return;
    // A text has no number, and a number no text.
    set_in_range(slot, 0.0);
    m_registers.set(slot, {0.0, {}, type});
}

void Parameters::set_text(std::size_t slot, const std::string& name, const std::string& text) {
    declare(slot, name, type_text);
    m_slots[slot].text = text;
    m_registers.set(slot, {0.0, m_slots[slot].text, type_text});
}

void Parameters::convert_number(std::size_t slot, const std::string& name, double number) {
    const DefaultFloatingPoint environment;
    declare(slot, name, type_number);
    const double kept = through_decimals(number);
    set_in_range(slot, kept);
    m_registers.numbers()[slot] = kept;
}

// Keeps the count of numbers beyond the range while that of a slot is replaced.
void Parameters::set_in_range(std::size_t slot, double number) {
    m_beyond_range += (in_range(number) ? 0 : 1) - (in_range(m_registers.numbers()[slot]) ? 0 : 1);
}

int Parameters::find(std::string_view name) const {
    constexpr int few = 6;  // up to so many, names are compared one after the other
    if (m_count > few) return find_by_hash(name);
    for (int slot = 0; slot < m_count; ++slot) {
        if (m_slots[static_cast<std::size_t>(slot)].has_name(name)) return slot;
    }
    return -1;
}

int Parameters::find_by_hash(std::string_view name) const {
    static_assert(NameKey::hashes > std::size_t{2} * most);
    const auto next = [](std::size_t at) { return (at + 1) % NameKey::hashes; };
    for (; m_indexed < m_count; ++m_indexed) {
        std::size_t at = NameKey(m_slots[static_cast<std::size_t>(m_indexed)].name).hash();
        while (m_index[at] != 0) at = next(at);
        m_index[at] = static_cast<std::uint8_t>(m_indexed + 1);
    }
    for (std::size_t at = NameKey(name).hash(); m_index[at] != 0; at = next(at)) {
        const int slot = m_index[at] - 1;
        if (slot >= m_count) continue;
        if (m_slots[static_cast<std::size_t>(slot)].has_name(name)) return slot;
    }
    return -1;
}

}  // namespace morandel
