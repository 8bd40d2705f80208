// The preparation pass: lists the free variables of an accepted formula and deduces from its
// place what type each is expected to have. One walk, whatever the formula.

#include <algorithm>
#include <array>

#include "engine/express.h"
#include "engine/functions.h"

using morandel::CONSTANT;
using morandel::NONE;
using morandel::Token;
using morandel::TokenClass;
using morandel::type_number;
using morandel::type_text;
using morandel::VARIABLE;

namespace {

// The argument lists around a token, the innermost last.
class OpenLists {
  public:
    void read(const Token& token, const Token* before) {
        if (token.code == '(') {
            m_lists[m_depth++] = {before != nullptr ? before->prefix : '\0', 0};
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
        const morandel::Function* row = morandel::function_of_code(code);
        if (commas == 0) return row != nullptr ? row->first_type : type_number;
        if (row == nullptr || row->further_types.empty()) return type;
        return row->further_types[std::min(commas, row->further_types.size()) - 1] - '0';
    }

  private:
    struct List {
        char code;  // of the function, or of a sign
        std::size_t commas;
    };

    std::array<List, CExpress::max_formula> m_lists;
    std::size_t m_depth = 0;
};

bool is_text_operator(const Token* token) {
    return token != nullptr &&
           (token->code == morandel::code_like || token->code == morandel::code_equal);
}

}  // namespace

// Whether no name is free. There is nothing to list then, and m_IsNumber is left as the walk would
// leave it.
bool CExpress::has_constants_only() {
    m_ReadIsNumber.reset();
    for (const Token& token : m_Tokens) {
        if (token.token_class == TokenClass::name) {
            if (!isConstVariable(token)) return false;
            m_ReadIsNumber = m_IsNumber;
        } else if (token.token_class == TokenClass::number) {
            m_ReadIsNumber = true;
        }
    }
    if (m_ReadIsNumber) m_IsNumber = *m_ReadIsNumber;
    if (m_Status != 0) m_Loaded = Loaded::constant_tokens;
    return true;
}

void CExpress::list_variables() {
    constexpr int farthest_look_back = 254;

    m_VariableList = nullptr;
    m_VariableNum = 0;
    if (has_constants_only()) return;
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
            if (const VariableNode* known = find_variable(m_Token->text())) {
                m_VariableType = known->type;
            } else {
                // Deliberate: the "(" that begins the formula does not count.
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
                push_variable(m_Token->text(), m_VariableType);
            }
        } else if (after_open && m_TokenType == CONSTANT) {
            open_before_constant = position - 1;
        }
        lists.read(*m_Token, before);
        before2 = before;
        before = m_Token;
        get_token();
    }
}

const VariableNode* CExpress::find_variable(std::string_view name) const {
    for (const VariableNode* node = m_VariableList; node != nullptr; node = node->next) {
        if (node->name == name) return node;
    }
    return nullptr;
}

// Nodes of earlier formulas are used again.
void CExpress::push_variable(std::string_view name, int type) {
    const auto count = static_cast<std::size_t>(m_VariableNum);
    if (count == m_VariableNodes.size()) m_VariableNodes.emplace_back();
    VariableNode& node = m_VariableNodes[count];
    node.name = name;
    node.type = type;
    node.next = m_VariableList;
    m_VariableList = &node;
    ++m_VariableNum;
}
