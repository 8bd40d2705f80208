// The names of a formula that have no value, and the types that their places ask for.

#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include <morandel/express.h>

#include "engine/token_reader.h"

namespace morandel {

class FreeVariables {
  public:
    void clear() { m_VariableNum = 0; }
    // Lists those of an accepted formula, in one walk.
    void list(TokenReader& tokens);

    // The last found first.
    [[nodiscard]] VariableNode* first() const {
        return m_VariableNum == 0 ? nullptr : m_VariableList[m_VariableNum - 1].get();
    }
    [[nodiscard]] int count() const { return static_cast<int>(m_VariableNum); }
    // By order of first appearance, from 0.
    [[nodiscard]] const VariableNode& operator[](std::size_t index) const {
        return *m_VariableList[index];
    }

  private:
    void push(std::string_view name);

    // Nodes of earlier formulas are used again, so that no host is left with one that is gone.
    std::vector<std::unique_ptr<VariableNode>> m_VariableList;
    std::size_t m_VariableNum = 0;
    int m_type = 0;  // of the variable handled last
};

}  // namespace morandel
