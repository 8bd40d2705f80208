// The names of a formula that have no value, and the types that their places ask for.

#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include <morandel/express.h>

#include "engine/token_reader.h"

namespace morandel {

class FreeVariables {
  public:
    void clear() { m_nodes.clear(); }
    // Lists those of an accepted formula, in one walk.
    void list(TokenReader& tokens);

    // The last found first.
    [[nodiscard]] VariableNode* first() const {
        return m_nodes.empty() ? nullptr : m_nodes.back().get();
    }
    [[nodiscard]] int count() const { return static_cast<int>(m_nodes.size()); }
    // By order of first appearance, from 0.
    [[nodiscard]] const VariableNode& operator[](std::size_t index) const {
        return *m_nodes[index];
    }

  private:
    std::vector<std::unique_ptr<VariableNode>> m_nodes;
    int m_type = 0;  // of the variable handled last
};

}  // namespace morandel
