#include "engine/free_variables.h"

#include <algorithm>
#include <array>
#include <utility>

#include "language/characters.h"
#include "language/functions.h"
#include "language/operators.h"

namespace morandel {
namespace {

// The argument lists around a token, the innermost last.
class OpenLists {
  public:
    void read(const Token& token, const Token& before) {
        if (token.code == '(') {
            m_lists[m_depth++] = {before.prefix, 0};
        } else if (token.code == ')') {
            m_depth -= m_depth > 0 ? 1 : 0;
        } else if (token.code == ',' && m_depth > 0) {
            ++m_lists[m_depth - 1].commas;
        }
    }

    // Type of an argument that begins now, by the table of functions; type where it says none.
    [[nodiscard]] int argument_type(int type) const {
        if (m_depth == 0) return type;
        const auto [code, commas] = m_lists[m_depth - 1];
        const FunctionRow* row = function_of_code(code);
        if (commas == 0) return row != nullptr ? row->first_type : type_number;
        if (row == nullptr || row->further_types.empty()) return type;
        const std::string_view further = row->further_types;
        return further[std::min(commas, further.size()) - 1] - '0';
    }

  private:
    struct List {
        char code;  // of the function, or of a sign
        std::size_t commas;
    };

    std::array<List, longest_formula> m_lists;
    std::size_t m_depth = 0;
};

}  // namespace

void FreeVariables::list(TokenReader& tokens) {
    constexpr int farthest_look_back = 254;

    clear();
    OpenLists lists;
    const Token* before = &end_of_nothing;   // the token before the current one
    const Token* before2 = &end_of_nothing;  // and the one before that
    bool argument_seen = false;              // never taken back within a formula
    int open_before_constant = 0;            // position of the last "(" with a constant after it

    tokens.get_token();
    for (int position = 0; !tokens.at(TokenClass::end); ++position) {
        const Token& token = tokens.token();
        const Operator* row = operator_of_code(before->code);
        const bool is_text = row != nullptr && row->texts != nullptr;
        const bool after_open = before->code == '(';
        if (is_text && m_VariableNum > 0 && before2->code != ')') first()->type = type_text;
        if (token.is(TokenClass::name)) {
            const VariableNode* known = first();
            while (known != nullptr && known->name != token.text) known = known->next;
            if (known != nullptr) {
                m_type = known->type;
            } else {
                // Deliberate: the "(" that begins the formula does not count.
                const int farthest = std::max(1, position - farthest_look_back);
                argument_seen = argument_seen || open_before_constant >= farthest;
                const bool is_argument = after_open || (before->code == ',' && argument_seen);
                m_type = is_argument ? lists.argument_type(m_type)
                         : is_text   ? type_text
                                     : type_number;
                argument_seen = argument_seen || after_open;
                push(token.text);
            }
        } else if (after_open && token.is_constant()) {
            open_before_constant = position - 1;
        }
        lists.read(token, *before);
        before2 = std::exchange(before, &token);
        tokens.get_token();
    }
}

void FreeVariables::push(std::string_view name) {
    VariableNode* const next = first();
    if (m_VariableNum == m_VariableList.size()) {
        m_VariableList.push_back(std::make_unique<VariableNode>());
    }
    VariableNode& node = *m_VariableList[m_VariableNum++];
    node.name = name;
    node.type = m_type;
    node.next = next;
}

}  // namespace morandel
