#include "tests/model/express.h"

#include <cstring>

#include "tests/model/numbers.h"

namespace model {

Express::Express() { g_NumArray.clear(); }

int Express::SetNumberOfPara(int n) {
    m_ParaCount = n <= max_parameters ? n : 0;
    return n <= max_parameters ? 1 : 0;
}

int Express::SetPara(const Para* para, int index, bool isString) {
    if (para == nullptr || index < 1 || index > m_ParaCount) return 0;
    Parameter& parameter = m_Para[static_cast<std::size_t>(index - 1)];
    parameter.name = para->name;
    parameter.is_text = isString;
    if (isString) {
        parameter.text = para->strValue;
    } else {
        parameter.number = through_decimals(para->value);
    }
    return 1;
}

int Express::SetExpression(const char* text) {
    if (text == nullptr) {
        m_ErrorMessage = gbk("公式为空");
        m_ErrorNumber = -1;
        return 0;
    }
    const std::string formula = text;
    if (formula.size() > max_formula) return 0;
    forget_faults();
    set_tokens(tokenize(formula));
    if (VerifyExpression() == 0) {
        set_tokens({Token()});
        return 0;
    }
    m_Prog = 0;
    list_variables();
    m_Prog = 0;
    return 1;
}

void Express::set_tokens(const std::vector<Token>& tokens) {
    m_Tokens = tokens;
    m_Current = m_Prog = 0;
}

void Express::forget_faults() {
    m_Status = 1;
    m_ErrorMessage.clear();
    m_ErrorNumber = -1;
}

void Express::ClearOld() {
    SetNumberOfPara(0);
    set_tokens({Token()});
    forget_faults();
}

// Reads the next token; at the end of the formula it stays there. A name is a constant where it is
// a parameter.
void Express::get_token() {
    m_Current = m_Prog;
    if (m_Prog + 1 < m_Tokens.size()) ++m_Prog;
    switch (token().token_class) {
        case TokenClass::end:
            m_TokenType = NONE;
            break;
        case TokenClass::delimiter:
            m_TokenType = DELIMITER;
            break;
        case TokenClass::number:
            m_TokenType = CONSTANT;
            m_IsNumber = true;
            break;
        case TokenClass::literal:
        case TokenClass::constant:
            m_TokenType = CONSTANT;
            break;
        case TokenClass::name:
            const Parameter* parameter = find_parameter(token().text);
            m_TokenType = parameter == nullptr ? VARIABLE : CONSTANT;
            if (parameter != nullptr) m_IsNumber = !parameter->is_text;
            break;
    }
}

const Express::Parameter* Express::find_parameter(const std::string& name) const {
    for (int i = 0; i < m_ParaCount; ++i) {
        const Parameter& parameter = m_Para[static_cast<std::size_t>(i)];
        if (parameter.name == name) return &parameter;
    }
    return nullptr;
}

int Express::CalcExpression() {
    drop_pending();
    m_ExtraArguments.clear();
    Value value;
    get_exp(value);
    m_Result = value.number;
    m_StrResult = value.text;
    m_ResultType = value.type;
    return m_Status != 0 ? 1 : 0;
}

// Of what earlier formulas left behind, an evaluation starts with the last 65,536 numbers and
// texts, and those texts with 64 MiB, as soon as so much has been added.
void Express::drop_pending() {
    constexpr std::size_t most_pending = 65'536;
    constexpr std::size_t most_pending_bytes = std::size_t{64} << 20;
    while (g_NumArray.size() > most_pending) g_NumArray.erase(g_NumArray.begin());
    while (m_TempStr.size() > most_pending) m_TempStr.erase(m_TempStr.begin());
    if (m_PushedBytes <= most_pending_bytes) return;
    m_PushedBytes = 0;
    std::size_t bytes = 0;
    for (const std::string& text : m_TempStr) bytes += text.size();
    while (bytes > most_pending_bytes) {
        bytes -= m_TempStr.front().size();
        m_TempStr.erase(m_TempStr.begin());
    }
}

std::string Express::GetVariable(int index, int* type) const {
    if (index < 1 || index > GetVariableNum()) return {};
    const VariableNode& node = m_VariableNodes[static_cast<std::size_t>(index - 1)];
    if (type != nullptr) *type = node.type;
    return node.name;
}

void Express::serror(int number) {
    m_Status = 0;
    const auto message = message_of(number);
    if (!message) return;
    m_ErrorMessage = *message;
    m_ErrorNumber = number;
}

}  // namespace model
