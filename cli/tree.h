// A formula as the evaluation reads it: what is an operand of what, and where that stands.

#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "cli/tokens.h"

namespace morandel::cli {

struct Node {
    enum class Type { leaf, operation, call, missing };

    Type type = Type::leaf;
    std::size_t token = 0;  // of the leaf, operator, sign or function
    std::size_t begin = 0;  // bytes, parentheses included
    std::size_t end = 0;
    bool in_parentheses = false;
    std::vector<std::size_t> children;  // operands or arguments in order; no sign has two
};

struct Tree {
    std::vector<FormulaToken> tokens;
    std::vector<Node> nodes;  // operands stand before what they belong to
    std::size_t root = 0;
    std::size_t stopped = 0;  // the token at which the evaluation stops reading
};

Tree tree_of(std::string_view formula);

}  // namespace morandel::cli
