// Room for the texts that one evaluation makes; all of it is given back at once.

#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace morandel {

// Copies it to room for as much; the end of what was written.
inline char* copy_text(std::string_view text, char* room) {
    return std::copy(text.begin(), text.end(), room);
}

class TextArena {
  public:
    // Uninitialised room for a text of that size, good until clear().
    char* allocate(std::size_t size) {
        if (size > m_left) grow(size);
        char* room = m_next;
        m_next += size;
        m_left -= size;
        return room;
    }

    // Gives back all room but the first block, so that small texts cost no allocation again.
    void clear() {
        if (m_blocks.empty()) return;
        m_blocks.resize(1);
        m_next = m_blocks.front().get();
        m_left = block_size;
    }

  private:
    static constexpr std::size_t block_size = std::size_t{32} * 1024;

    void grow(std::size_t size) {
        const std::size_t room = m_blocks.empty() ? block_size : std::max(size, block_size);
        m_blocks.push_back(std::make_unique_for_overwrite<char[]>(room));
        m_next = m_blocks.back().get();
        m_left = room;
        if (size > m_left) grow(size);
    }

    std::vector<std::unique_ptr<char[]>> m_blocks;  // the first one is of block_size
    char* m_next = nullptr;
    std::size_t m_left = 0;
};

}  // namespace morandel
