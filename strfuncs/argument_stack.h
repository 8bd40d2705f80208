// The further arguments of calls, in written order, the last one on top. What a call leaves
// stays for the calls and evaluations after it.

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace morandel {

// Popped slots are kept and assigned to again: pushing a text that fits allocates nothing.
template <class Element>
class ArgumentStack {
  public:
    [[nodiscard]] std::size_t size() const { return m_end - m_begin; }
    [[nodiscard]] bool empty() const { return m_end == m_begin; }

    const Element& operator[](std::size_t index) const { return m_slots[m_begin + index]; }
    // 0 is the last element, 1 the one below it.
    const Element& from_top(std::size_t depth) const { return m_slots[m_end - 1 - depth]; }

    // Grows with every change of the content.
    [[nodiscard]] std::uint64_t changes() const { return m_changes; }

    template <class Source>
    void push(const Source& source) {
        ++m_changes;
        if (m_end == m_slots.size()) m_slots.emplace_back();
        m_slots[m_end] = source;
        ++m_end;
    }

    // Takes up to count elements from the top.
    void pop(std::size_t count) {
        const std::size_t taken = std::min(count, size());
        m_end -= taken;
        m_changes += taken;
    }

    void clear() {
        m_changes += size();
        m_begin = m_end = 0;
    }

    // Removes the elements at index, index + 2, index + 4, ...
    void remove_every_second(std::size_t index) {
        ++m_changes;
        std::size_t kept = m_begin + index;
        for (std::size_t next = kept + 1; next < m_end; next += 2, ++kept) {
            std::swap(m_slots[kept], m_slots[next]);
        }
        m_end = kept;
    }

    // Lets the oldest go where there are more than limit; their slots are reused in time, so
    // that a full stack costs each evaluation only what it added.
    void drop_oldest(std::size_t limit) {
        if (size() <= limit) return;
        ++m_changes;
        m_begin = m_end - limit;
        if (m_begin < limit) return;
        std::rotate(m_slots.begin(), slot(m_begin), slot(m_end));
        m_begin = 0;
        m_end = limit;
    }

    // Hands on each element that is popped or dropped and whose room waits to be used again.
    template <class Visit>
    void each_spare(const Visit& visit) {
        std::for_each(m_slots.begin(), slot(m_begin), visit);
        std::for_each(slot(m_end), m_slots.end(), visit);
    }

  private:
    auto slot(std::size_t index) { return m_slots.begin() + static_cast<std::ptrdiff_t>(index); }

    std::vector<Element> m_slots;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    std::uint64_t m_changes = 0;
};

// Further arguments of a call by their place, 0 being the second argument.
struct ExtraArguments {
    static constexpr double not_given = 1000000.0;
    static constexpr std::size_t kept = 4;  // no function reads more

    double values[kept] = {not_given, not_given, not_given, not_given};
};

// The first argument of the last strcat that had a second one, with the number of texts that were
// pending then.
struct StringArgument {
    std::string text;
    std::size_t index = 0;
};

}  // namespace morandel
