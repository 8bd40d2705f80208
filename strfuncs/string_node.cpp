#include <morandel/string_node.h>

CCStringNode::CCStringNode() = default;

CCStringNode::CCStringNode(const char* text) : m_strText(text == nullptr ? "" : text) {}
