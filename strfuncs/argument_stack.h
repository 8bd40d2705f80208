// The further arguments of calls, in written order, the last one on top. What a call leaves
// stays for the calls and evaluations after it.

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "base/text_arena.h"

namespace morandel {

// Slots that are popped or dropped are kept and assigned to again, so that a text finds the room of
// one before it.
template <class Element>
class ArgumentStack {
  public:
    [[nodiscard]] std::size_t size() const { return m_size; }
    [[nodiscard]] bool empty() const { return m_size == 0; }

    Element& operator[](std::size_t index) { return m_slots[slot(index)]; }
    const Element& operator[](std::size_t index) const { return m_slots[slot(index)]; }
    // 0 is the last element, 1 the one below it.
    const Element& from_top(std::size_t depth) const { return (*this)[m_size - 1 - depth]; }

    // Grows with every change of the content.
    [[nodiscard]] std::uint64_t changes() const { return m_changes; }

    template <class Source>
    void push(const Source& source) {
        ++m_changes;
        if (m_size == m_capacity) grow();
        (*this)[m_size] = source;
        ++m_size;
    }

    // Takes up to count elements from the top.
    void pop(std::size_t count) {
        const std::size_t taken = std::min(count, m_size);
        m_size -= taken;
        m_changes += taken;
    }

    void clear() { pop(m_size); }

    // Removes the elements at index, index + 2, index + 4, ...
    void remove_every_second(std::size_t index) {
        ++m_changes;
        for (std::size_t next = index + 1; next < m_size; next += 2, ++index) {
            std::swap((*this)[index], (*this)[next]);
        }
        m_size = index;
    }

    // Lets the oldest go where there are more than limit.
    void drop_oldest(std::size_t limit) {
        if (m_size <= limit) return;
        ++m_changes;
        m_begin += m_size - limit;
        m_size = limit;
    }

    // Hands on each element that is popped or dropped and whose room waits to be used again.
    template <class Visit>
    void each_spare(const Visit& visit) {
        for (std::size_t index = m_size; index < m_capacity; ++index) visit((*this)[index]);
    }

  private:
    [[nodiscard]] std::size_t slot(std::size_t index) const {
        return (m_begin + index) & (m_capacity - 1);
    }
    void grow() {
        const auto first = static_cast<std::ptrdiff_t>(slot(0));
        std::rotate(m_slots.begin(), m_slots.begin() + first, m_slots.end());
        m_begin = 0;
        m_slots.resize(std::max(2 * m_capacity, std::size_t{8}));
        m_capacity = m_slots.size();
    }

    std::vector<Element> m_slots;  // a ring
    std::size_t m_capacity = 0;    // its size, a power of two, which a vector finds by division
    std::size_t m_begin = 0;       // counts on past the ring's end
    std::size_t m_size = 0;
    std::uint64_t m_changes = 0;
};

// Further arguments of a call by their place, 0 being the second argument.
struct ExtraArguments {
    static constexpr double not_given = 1000000.0;
    static constexpr std::size_t kept = 4;  // no function reads more

    double values[kept] = {not_given, not_given, not_given, not_given};
};

// A text that calls leave for one another. While an evaluation runs, it lies where it was found, in
// the formula, a parameter or the arena; keep() copies it for those to come.
class PendingText {
  public:
    PendingText() = default;
    PendingText(PendingText&&) = default;  // the room stays where it is
    PendingText& operator=(PendingText&&) = default;
    PendingText& operator=(std::string_view text) {
        m_text = text;
        return *this;
    }
    operator std::string_view() const { return m_text; }
    [[nodiscard]] std::size_t size() const { return m_text.size(); }

    [[nodiscard]] bool is_kept() const { return m_text.data() == m_room.data() || m_text.empty(); }
    void keep() {
        if (is_kept()) return;
        if (m_room.size() < m_text.size()) m_room.resize(m_text.size());
        m_text = {m_room.data(), copy_text(m_text, m_room.data())};
    }

    // The room stays for the texts after this one.
    [[nodiscard]] std::size_t room() const { return m_room.size(); }

  private:
    std::string_view m_text;
    std::vector<char> m_room;
};

// The first argument of the last strcat that had a second one, with the number of texts that were
// pending then.
struct StringArgument {
    PendingText text;
    std::size_t index = 0;
};

}  // namespace morandel
