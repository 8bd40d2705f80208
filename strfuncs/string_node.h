// A text with a link to the next one, for hosts that chain texts.

#pragma once

#include <string>

#include "engine/export.h"

// The link is not owned: copies share it, and destroying a node leaves its successor alone.
//     CCStringNode last("b"), first("a");
//     first.m_pNext = &last;
class MORANDEL_EXPORT CCStringNode {
  public:
    CCStringNode() = default;
    explicit CCStringNode(const char* text) : m_strText(text == nullptr ? "" : text) {}

    std::string m_strText;
    CCStringNode* m_pNext = nullptr;
};
