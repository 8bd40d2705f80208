// A text that calls leave for one another.

#pragma once

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "base/text_arena.h"

namespace morandel {

// While an evaluation runs, a text lies where it was found, in the formula, a parameter or the
// arena. keep() copies it for those to come.
class PendingText {
  public:
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
    std::vector<char> m_room;  // which stays where it is when this is moved
};

// The first argument of the last strcat that had a second one, with the number of texts that were
// pending then.
struct StringArgument {
    PendingText text;
    std::size_t index = 0;
};

}  // namespace morandel
