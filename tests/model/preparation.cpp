// Lists the free variables of an accepted formula and deduces from its place what type each is
// expected to have.

#include <algorithm>
#include <string_view>

#include "tests/model/express.h"
#include "tests/model/words.h"

namespace model {
namespace {

// The argument lists around a token, the innermost last.
class OpenLists {
  public:
    void read(const Token& token, const Token* before) {
        if (token.code == '(') {
            m_lists.push_back({before != nullptr ? before->prefix : '\0', 0});
        } else if (token.code == ')' && !m_lists.empty()) {
            m_lists.pop_back();
        } else if (token.code == ',' && !m_lists.empty()) {
            ++m_lists.back().commas;
        }
    }

    // Type of an argument that begins now, by the table of functions; type where it says none.
    [[nodiscard]] int argument_type(int type) const {
        if (m_lists.empty()) return type;
        const auto [code, commas] = m_lists.back();
        const Function* row = function_of_code(code);
        if (commas == 0) return row != nullptr ? row->first_type : type_number;
        const std::string_view types = row != nullptr ? row->further_types : "";
        return types.empty() ? type : types[std::min(commas, types.size()) - 1] - '0';
    }

  private:
    struct List {
        char code;  // of the function, or of a sign
        std::size_t commas;
    };

    std::vector<List> m_lists;
};

bool is_text_operator(const Token* token) {
    return token != nullptr && (token->code == code_like || token->code == code_equal);
}

}  // namespace

void Express::list_variables() {
    constexpr int farthest_look_back = 254;

    m_VariableList = nullptr;
    m_VariableNodes.clear();
    OpenLists lists;
    const Token* before = nullptr;   // the token before the current one
    const Token* before2 = nullptr;  // and the one before that
    bool argument_seen = false;      // never taken back within a formula
    int open_before_constant = 0;    // position of the last "(" with a constant after it

    get_token();
    for (int position = 0; m_TokenType != NONE; ++position) {
        if (is_text_operator(before) && m_VariableList != nullptr && before2 != nullptr &&
            before2->code != ')') {
            m_VariableList->type = type_text;
        }
        const bool after_open = before != nullptr && before->code == '(';
        if (m_TokenType == VARIABLE) {
            if (const VariableNode* known = find_variable(token().text)) {
                m_VariableType = known->type;
            } else {
                // The "(" that begins the formula does not count.
                if (open_before_constant > 0 &&
                    open_before_constant >= position - farthest_look_back) {
                    argument_seen = true;
                }
                const bool after_comma = before != nullptr && before->code == ',';
                if (after_open || (after_comma && argument_seen)) {
                    m_VariableType = lists.argument_type(m_VariableType);
                } else {
                    m_VariableType = is_text_operator(before) ? type_text : type_number;
                }
                argument_seen = argument_seen || after_open;
                push_variable(token().text, m_VariableType);
            }
        } else if (after_open && m_TokenType == CONSTANT) {
            open_before_constant = position - 1;
        }
        lists.read(token(), before);
        before2 = before;
        before = &token();
        get_token();
    }
}

const VariableNode* Express::find_variable(const std::string& name) const {
    for (const VariableNode* node = m_VariableList; node != nullptr; node = node->next) {
        if (node->name == name) return node;
    }
    return nullptr;
}

void Express::push_variable(const std::string& name, int type) {
    m_VariableNodes.push_back({name, type, m_VariableList});
    m_VariableList = &m_VariableNodes.back();
}

}  // namespace model
