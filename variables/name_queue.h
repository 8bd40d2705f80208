// First in, first out: the names of variables that wait to be settled.

#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

#include "strfuncs/string_node.h"

namespace morandel {

class NameQueue {
  public:
    [[nodiscard]] bool empty() const { return m_first == nullptr; }
    [[nodiscard]] std::size_t size() const { return m_size; }

    void push(std::string_view name) {
        CCStringNode* node = take_spare();
        node->m_strText = name;
        (m_first == nullptr ? m_first : m_last->m_pNext) = node;
        m_last = node;
        ++m_size;
    }

    // The name that has waited longest; the text lives until the next push.
    std::string_view pop() {
        CCStringNode* node = m_first;
        m_first = node->m_pNext;
        node->m_pNext = m_spare;
        m_spare = node;
        --m_size;
        return node->m_strText;
    }

  private:
    CCStringNode* take_spare() {
        if (m_spare == nullptr) return &m_nodes.emplace_back();
        CCStringNode* node = m_spare;
        m_spare = node->m_pNext;
        node->m_pNext = nullptr;
        return node;
    }

    std::deque<CCStringNode> m_nodes;
    CCStringNode* m_first = nullptr;
    CCStringNode* m_last = nullptr;
    CCStringNode* m_spare = nullptr;
    std::size_t m_size = 0;
};

}  // namespace morandel
