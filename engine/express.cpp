// The evaluator's life and its public calls.

#include "engine/express.h"

#include <algorithm>
#include <cstring>

#include "engine/numbers.h"
#include "engine/tokenizer.h"

namespace morandel {

constinit ArgumentStack<double> g_NumArray;

}  // namespace morandel

using morandel::Error;
using morandel::g_NumArray;
using morandel::Token;
using morandel::TokenClass;

namespace {

constexpr Token end_of_nothing;

// How much of what earlier formulas left behind an evaluation starts with.
constexpr std::size_t most_pending = 65'536;

}  // namespace

CExpress::CExpress() : m_Token(&end_of_nothing), m_Prog(&end_of_nothing) {
    g_NumArray.clear();
}

CExpress::~CExpress() = default;

int CExpress::SetNumberOfPara(int n) {
    const bool accepted = n <= max_parameters;
    const int count = accepted ? n : 0;
    if (count != m_ParaCount) ++m_ParaGeneration;
    m_ParaCount = count;
    return accepted ? 1 : 0;
}

int CExpress::SetPara(MYPARA* para, int index, bool isString) {
    if (para == nullptr || index < 1 || index > m_ParaCount) return 0;
    const auto slot = static_cast<std::size_t>(index - 1);
    if (slot >= m_Para.size()) m_Para.resize(slot + 1);

    Parameter& parameter = m_Para[slot];
    if (parameter.name != para->name) {
        ++m_ParaGeneration;
        parameter.name = para->name;
    }
    if (isString) {
        parameter.strValue = para->strValue;
    } else {
        parameter.value = morandel::through_decimals(para->value);
    }
    parameter.isString = isString;
    return 1;
}

int CExpress::SetExpression(const char* text) {
    if (text == nullptr) {
        m_ErrorMessage = morandel::null_formula_message;
        m_ErrorNumber = -1;
        return 0;
    }
    const void* terminator = std::memchr(text, '\0', max_formula + 1);
    if (terminator == nullptr) return 0;
    const auto length = static_cast<std::size_t>(static_cast<const char*>(terminator) - text);

    // The text may be this evaluator's own message, so it is copied before that goes.
    std::memcpy(m_Formula, text, length);
    m_Formula[length] = '\0';
    m_Status = 1;
    m_ErrorMessage.clear();
    m_ErrorNumber = -1;
    // Should memory run out among the tokens, there is no formula.
    m_Tokens.clear();
    rewind();
    morandel::tokenize(m_Formula, m_Tokens);
    rewind();
    if (VerifyExpression() == 0) {
        m_Formula[0] = '\0';
        m_Tokens.clear();
        rewind();
        return 0;
    }
    rewind();
    list_variables();
    rewind();
    return 1;
}

std::size_t CExpress::tell() const {
    return m_Tokens.empty() ? 0 : static_cast<std::size_t>(m_Prog - m_Tokens.data());
}

void CExpress::seek(std::size_t position) {
    m_Prog = m_Tokens.empty() ? &end_of_nothing
                              : m_Tokens.data() + std::min(position, m_Tokens.size() - 1);
}

// Reads the next token; at the end of the formula it stays there.
void CExpress::get_token() {
    m_Token = m_Prog;
    switch (m_Token->token_class) {
        case TokenClass::end:
            m_TokenType = morandel::NONE;
            return;
        case TokenClass::delimiter:
            m_TokenType = morandel::DELIMITER;
            break;
        case TokenClass::number:
            m_TokenType = morandel::CONSTANT;
            m_IsNumber = true;
            break;
        case TokenClass::literal:
        case TokenClass::constant:
            m_TokenType = morandel::CONSTANT;
            break;
        case TokenClass::name:
            m_TokenType = isConstVariable(*m_Token) ? morandel::CONSTANT : morandel::VARIABLE;
            break;
    }
    ++m_Prog;
}

// Whether a name is a parameter. It is looked up when it is read, and again only after names or
// their number have changed.
bool CExpress::isConstVariable(const Token& name) {
    if (name.generation != m_ParaGeneration) {
        name.slot = static_cast<std::int16_t>(find_parameter(name.text()));
        name.generation = m_ParaGeneration;
    }
    if (name.slot < 0) return false;
    m_IsNumber = !m_Para[static_cast<std::size_t>(name.slot)].isString;
    return true;
}

// The first slot of that name, or -1.
int CExpress::find_parameter(std::string_view name) const {
    const int count = std::min(m_ParaCount, static_cast<int>(m_Para.size()));
    for (int slot = 0; slot < count; ++slot) {
        if (m_Para[static_cast<std::size_t>(slot)].name == name) return slot;
    }
    return -1;
}

int CExpress::CalcExpression() {
    g_NumArray.drop_oldest(most_pending);
    m_TempStr.drop_oldest(most_pending);
    m_ExtraArguments.clear();
    m_Texts.clear();

    Value value;
    get_exp(value);
    m_Result = value.number;
    m_StrResult = value.text;
    m_ResultType = value.type;
    return m_Status != 0 ? 1 : 0;
}

CExpress::Memory CExpress::memory() const {
    return {g_NumArray.changes() + m_TempStr.changes(), m_IsNumber};
}

double CExpress::GetResult() {
    return m_Status != 0 ? m_Result : 0.0;
}

int CExpress::GetResultType() {
    return m_Status != 0 ? m_ResultType : 0;
}

int CExpress::GetStatu() {
    return m_Status;
}

int CExpress::GetExpressionStatus() {
    return m_ExpressionStatus;
}

int CExpress::GetErrorNumber() {
    return m_ErrorNumber;
}

VariableNode* CExpress::GetVariableList() {
    return m_VariableList;
}

int CExpress::GetVariableNum() {
    return m_VariableNum;
}

std::string CExpress::GetVariable(int index, int* type) {
    if (index < 1 || index > m_VariableNum) return {};
    const VariableNode& node = m_VariableNodes[static_cast<std::size_t>(index - 1)];
    if (type != nullptr) *type = node.type;
    return node.name;
}

void CExpress::ClearOld() {
    SetNumberOfPara(0);
    m_Formula[0] = '\0';
    m_Tokens.clear();
    rewind();
    m_Token = m_Prog;
    m_Status = 1;
    m_ErrorMessage.clear();
    m_ErrorNumber = -1;
}

void CExpress::serror(int n) {
    m_Status = 0;
    const auto message = morandel::error_message(n);
    if (!message) return;
    m_ErrorMessage = *message;
    m_ErrorNumber = n;
}
