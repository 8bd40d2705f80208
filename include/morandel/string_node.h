// A text with a link to the next one, for hosts that chain texts.

#pragma once

#include <string>

#include <morandel/export.h>

// The link is not owned: copies share it, and destroying a node leaves its successor alone.
//     CCStringNode first("a"), last("b");
//     first.m_pNext = &last;
class MORANDEL_EXPORT CCStringNode {
  public:
    CCStringNode();
    CCStringNode(const char* text);  // null counts as empty

    std::string m_strText;  // bytes of code page 936
    CCStringNode* m_pNext = nullptr;
};
