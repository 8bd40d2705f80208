// The named values of an evaluator, found by name without a walk.

#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/name_key.h"
#include "engine/numbers.h"
#include "engine/value.h"

namespace morandel {

struct Parameter {
    // What is needed again and again comes first, to lie together.
    std::string name;
    double number = 0.0;
    bool is_text = false;
    NameKey key;  // of the name
    std::string text;

    // Whether it is that name; of names as short as most are alone, without a call.
    [[nodiscard]] bool has_short_name(const std::string& wanted) const {
        const std::size_t size = name.size();
        if (size != wanted.size()) return false;
        const char* a = name.data();
        const char* b = wanted.data();
        if (size < 2) return size == 1 && *a == *b;
        if (size < 4) {
            return read_bytes<std::uint16_t>(a) == read_bytes<std::uint16_t>(b) &&
                   a[size - 1] == b[size - 1];
        }
        if (size > 8) return false;
        return read_bytes<std::uint32_t>(a) == read_bytes<std::uint32_t>(b) &&
               read_bytes<std::uint32_t>(a + size - 4) == read_bytes<std::uint32_t>(b + size - 4);
    }
    [[nodiscard]] bool has_name(std::string_view wanted, const NameKey& wanted_key) const {
        return key == wanted_key && (key.is_whole_name() || name == wanted);
    }
};

class Parameters {
  public:
    static constexpr int most = 50;

    [[nodiscard]] int count() const { return m_count; }
    // Slots keep what they hold.
    void set_count(int count) {
        if (count != m_count) change_count(count);
    }

    // Slots are below the count.
    void set_number(std::size_t slot, const std::string& name, double number) {
        if (!is_plain(number) || m_beyond_range > 0) return convert_number(slot, name, number);
        Parameter& parameter = m_slots[slot];
        const bool declared = !parameter.is_text && parameter.has_short_name(name);
        (declared ? parameter : declare(slot, name, false)).number = number;
    }
    void set_text(std::size_t slot, const std::string& name, const std::string& text);

    const Parameter& operator[](std::size_t slot) const { return m_slots[slot]; }

    // The first of the counted slots that has that name, or -1.
    [[nodiscard]] int find(std::string_view name) const;

    // Whether all numbers are in the range that is computed in, also those that do not count now.
    [[nodiscard]] bool all_in_range() const { return m_beyond_range == 0; }

    // Changes when a name can mean another slot, or its slot another kind of value.
    [[nodiscard]] std::uint32_t generation() const { return m_generation; }

  private:
    // Whether 20 decimals and the range leave it alone. Compared as bits, which cannot trap where a
    // host has floating-point exceptions on.
    static bool is_plain(double number) {
        const std::uint64_t size = std::bit_cast<std::uint64_t>(number) << 1 >> 1;
        return (size >= std::bit_cast<std::uint64_t>(kept_by_20_decimals) &&
                size <= std::bit_cast<std::uint64_t>(range_bound)) ||
               size == 0;
    }

    void change_count(int count);
    void convert_number(std::size_t slot, const std::string& name, double number);
    Parameter& declare(std::size_t slot, const std::string& name, bool is_text);
    static constexpr std::size_t index_size = NameKey::hashes;

    int m_count = 0;
    int m_beyond_range = 0;
    std::uint32_t m_generation = 1;
    std::vector<Parameter> m_slots;
    // Open addressing over the names of the first so many slots; an entry holds a slot plus one.
    // Slots are entered when a name is looked for, and stay when they do not count any more.
    mutable std::array<std::uint8_t, index_size> m_index{};
    mutable int m_indexed = 0;
};

}  // namespace morandel
