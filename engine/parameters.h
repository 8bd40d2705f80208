// The named values of an evaluator, found by name without a walk.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace morandel {

struct Parameter {
    std::string name;
    double number = 0.0;
    std::string text;
    bool is_text = false;
};

class Parameters {
  public:
    static constexpr int most = 50;

    [[nodiscard]] int count() const { return m_count; }
    // Slots keep what they hold.
    void set_count(int count) {
        if (count != m_count) ++m_generation;
        m_count = count;
    }

    void set_number(std::size_t slot, const std::string& name, double number) {
        named(slot, name, false).number = number;
    }
    void set_text(std::size_t slot, const std::string& name, const std::string& text) {
        named(slot, name, true).text = text;
    }

    const Parameter& operator[](std::size_t slot) const { return m_slots[slot]; }

    // The first of the counted slots that has that name, or -1.
    [[nodiscard]] int find(std::string_view name) const;

    // Changes when a name can mean another slot, or its slot another kind of value.
    [[nodiscard]] std::uint32_t generation() const { return m_generation; }

  private:
    Parameter& named(std::size_t slot, const std::string& name, bool is_text) {
        if (slot >= m_slots.size()) {
            m_slots.resize(slot + 1);
            ++m_generation;
        }
        Parameter& parameter = m_slots[slot];
        if (parameter.name != name || parameter.is_text != is_text) {
            ++m_generation;
            parameter.name = name;
            parameter.is_text = is_text;
        }
        return parameter;
    }
    void index() const;

    static constexpr std::size_t index_size = 128;

    int m_count = 0;
    std::uint32_t m_generation = 1;
    std::vector<Parameter> m_slots;
    // Open addressing over the names; an entry holds a slot plus one. Made when it is asked for.
    mutable std::array<std::uint8_t, index_size> m_index{};
    mutable std::uint32_t m_indexed = 0;
};

}  // namespace morandel
