#include "engine/parameters.h"

#include <algorithm>

#include "engine/floating_point.h"

namespace morandel {

void Parameters::change_count(int count) {
    const auto wanted = static_cast<std::size_t>(std::max(count, 0));
    if (wanted > m_slots.size()) {
        // Never moved, since programs point at the numbers; and where one is added at a time, made
        // several at a time.
        m_slots.reserve(most);
        m_slots.resize(std::clamp(2 * m_slots.size(), wanted, std::size_t{most}));
    }
    m_count = count;
    ++m_generation;
}

Parameter& Parameters::declare(std::size_t slot, const std::string& name, bool is_text) {
    Parameter& parameter = m_slots[slot];
    const bool same_name = parameter.has_short_name(name) || parameter.name == name;
    if (parameter.is_text != is_text || !same_name) {
        if (static_cast<int>(slot) < m_indexed) {
            m_indexed = 0;
            m_index.fill(0);
        }
        parameter.name = name;
        parameter.key = NameKey(name);
        parameter.is_text = is_text;
        ++m_generation;
    }
    return parameter;
}

void Parameters::set_text(std::size_t slot, const std::string& name, const std::string& text) {
    declare(slot, name, true).text = text;
}

void Parameters::convert_number(std::size_t slot, const std::string& name, double number) {
    const DefaultFloatingPoint environment;
    Parameter& parameter = declare(slot, name, false);
    const double kept = through_decimals(number);
    m_beyond_range += (in_range(kept) ? 0 : 1) - (in_range(parameter.number) ? 0 : 1);
    parameter.number = kept;
}

int Parameters::find(std::string_view name) const {
    static_assert(index_size > std::size_t{2} * most);
    for (; m_indexed < m_count; ++m_indexed) {
        std::size_t at = m_slots[static_cast<std::size_t>(m_indexed)].key.hash();
        while (m_index[at] != 0) at = (at + 1) % index_size;
        m_index[at] = static_cast<std::uint8_t>(m_indexed + 1);
    }
    const NameKey key(name);
    for (std::size_t at = key.hash(); m_index[at] != 0; at = (at + 1) % index_size) {
        const int slot = m_index[at] - 1;
        if (slot < m_count && m_slots[static_cast<std::size_t>(slot)].has_name(name, key)) {
            return slot;
        }
    }
    return -1;
}

}  // namespace morandel
