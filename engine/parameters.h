// The named values of an evaluator, found by name without a walk.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/name_key.h"
#include "base/numbers.h"
#include "base/value.h"
#include "engine/registers.h"

namespace morandel {

struct Parameter {
    std::string name;
    std::string text;

    // Names of up to 8 bytes, as most are, are compared without a call.
    [[nodiscard]] bool has_name(std::string_view wanted) const {
        const std::size_t size = name.size();
        if (size != wanted.size()) return false;
        const char* a = name.data();
        const char* b = wanted.data();
        if (size < 2) return size == 0 || *a == *b;
        if (size < 4) {
            return read_bytes<std::uint16_t>(a) == read_bytes<std::uint16_t>(b) &&
                   a[size - 1] == b[size - 1];
        }
        if (size > 8) return name == wanted;
        return read_bytes<std::uint32_t>(a) == read_bytes<std::uint32_t>(b) &&
               read_bytes<std::uint32_t>(a + size - 4) == read_bytes<std::uint32_t>(b + size - 4);
    }
};

class Parameters {
  public:
    static constexpr int most = Registers::parameters;

    // The values go to the first registers.
    explicit Parameters(Registers& registers) : m_registers(registers) {}

    [[nodiscard]] int count() const { return m_count; }
    // Slots keep what they hold. Of more than there can be, none count; false then.
    bool set_count(int count) {
        const bool accepted = count <= most;
        if (!accepted) count = 0;
        if (count == m_count) return accepted;
        if (count > static_cast<int>(m_slots.size())) add_slots(static_cast<std::size_t>(count));
        m_count = count;
        ++m_generation;
        return accepted;
    }

    // Slots are below the count.
    void set(std::size_t slot, const std::string& name, bool is_text, double number,
             const std::string& text) {
        is_text ? set_text(slot, name, text) : set_number(slot, name, number);
    }
    void set_number(std::size_t slot, const std::string& name, double number) {
        if (!is_plain(number) || m_beyond_range > 0) return convert_number(slot, name, number);
        declare(slot, name, type_number);
        m_registers.numbers()[slot] = number;
    }
    void set_text(std::size_t slot, const std::string& name, const std::string& text);

    [[nodiscard]] bool is_text(std::size_t slot) const {
        return m_registers.kind(slot) == type_text;
    }

    // The first of the counted slots that has that name, or -1.
    [[nodiscard]] int find(std::string_view name) const;

    // Whether all numbers are in the range that is computed in, also those that do not count now.
    [[nodiscard]] bool all_in_range() const { return m_beyond_range == 0; }

    // Changes when a name can mean another slot, or its slot another kind of value.
    [[nodiscard]] std::uint32_t generation() const { return m_generation; }

  private:
    [[nodiscard]] int find_by_hash(std::string_view name) const;
    void add_slots(std::size_t wanted);
    void convert_number(std::size_t slot, const std::string& name, double number);
    void set_in_range(std::size_t slot, double number);
    void declare(std::size_t slot, const std::string& name, ResultType type) {
        if (m_registers.kind(slot) != type || !m_slots[slot].has_name(name))
            rename(slot, name, type);
    }
    void rename(std::size_t slot, const std::string& name, ResultType type);

    Registers& m_registers;
    int m_count = 0;
    int m_beyond_range = 0;
    std::uint32_t m_generation = 1;
    std::vector<Parameter> m_slots;
    // Open addressing over the names of the first so many slots; an entry holds a slot plus one.
    // Slots are entered when a name is looked for, and stay when they do not count any more.
    mutable std::array<std::uint8_t, NameKey::hashes> m_index{};
    mutable int m_indexed = 0;
};

}  // namespace morandel
