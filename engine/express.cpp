// The evaluator's life and its public calls.

#include "engine/express.h"

#include <algorithm>

#include "engine/floating_point.h"
#include "engine/program.h"

namespace morandel {

#ifdef MORANDEL_PER_THREAD_STATE
constinit thread_local ArgumentStack<double> g_NumArray;
#else
constinit ArgumentStack<double> g_NumArray;
#endif

}  // namespace morandel

using morandel::end_of_nothing;
using morandel::Error;
using morandel::g_NumArray;
using morandel::Token;
using morandel::TokenClass;

namespace {

// How much of what earlier formulas left behind an evaluation starts with.
constexpr std::size_t most_pending = 65'536;
constexpr std::size_t most_pending_bytes = std::size_t{64} << 20;

}  // namespace

CExpress::CExpress() : m_Token(&end_of_nothing), m_Prog(&end_of_nothing) {
    g_NumArray.clear();
}

CExpress::~CExpress() = default;

int CExpress::SetNumberOfPara(int n) {
    const bool accepted = n <= max_parameters;
    m_Para.set_count(accepted ? n : 0);
    return accepted ? 1 : 0;
}

int CExpress::SetPara(MYPARA* para, int index, bool isString) {
    if (para == nullptr || index < 1 || index > m_Para.count()) return 0;
    const auto slot = static_cast<std::size_t>(index - 1);
    if (isString) {
        m_Para.set_text(slot, para->name, para->strValue);
    } else {
        m_Para.set_number(slot, para->name, para->value);
    }
    return 1;
}

std::size_t CExpress::tell() const {
    return m_Tokens.empty() ? 0 : static_cast<std::size_t>(m_Prog - m_Tokens.data());
}

void CExpress::seek(std::size_t position) {
    need_tokens();
    m_Prog = m_Tokens.empty() ? &end_of_nothing
                              : m_Tokens.data() + std::min(position, m_Tokens.size() - 1);
}

// Reads the next token; at the end of the formula it stays there.
void CExpress::get_token() {
    // In the order of TokenClass; a name is a constant where it is a parameter.
    static constexpr morandel::TokenType types[] = {
        morandel::NONE,     morandel::DELIMITER, morandel::CONSTANT,
        morandel::CONSTANT, morandel::CONSTANT,  morandel::VARIABLE,
    };
    m_Token = m_Prog;
    const TokenClass token_class = m_Token->token_class;
    m_TokenType = types[static_cast<std::size_t>(token_class)];
    if (token_class == TokenClass::number) m_IsNumber = true;
    if (token_class == TokenClass::name && isConstVariable(*m_Token)) {
        m_TokenType = morandel::CONSTANT;
    }
    if (token_class != TokenClass::end) ++m_Prog;
}

// Whether a name is a parameter. It is looked up when it is read, and again only after names or
// their number have changed.
bool CExpress::isConstVariable(const Token& name) {
    if (name.generation != m_Para.generation()) {
        name.slot = static_cast<std::int16_t>(m_Para.find(name.text()));
        name.generation = m_Para.generation();
    }
    if (name.slot < 0) return false;
    m_IsNumber = !m_Para[static_cast<std::size_t>(name.slot)].is_text;
    return true;
}

int CExpress::CalcExpression() {
    const morandel::DefaultFloatingPoint environment;
    if (has_much_pending()) drop_pending();
    if (!run_program()) calculate_by_levels();
    return m_Status != 0 ? 1 : 0;
}

bool CExpress::has_much_pending() const {
    return g_NumArray.size() > most_pending || m_TempStr.size() > most_pending ||
           m_PushedBytes > most_pending_bytes;
}

void CExpress::drop_pending() {
    g_NumArray.drop_oldest(most_pending);
    m_TempStr.drop_oldest(most_pending);
    if (m_PushedBytes <= most_pending_bytes) return;
    m_PushedBytes = 0;
    std::size_t kept = 0;
    for (std::size_t bytes = 0; kept < m_TempStr.size(); ++kept) {
        bytes += m_TempStr.from_top(kept).size();
        if (bytes > most_pending_bytes) break;
    }
    m_TempStr.drop_oldest(kept);
    m_TempStr.each_spare([](std::string& text) {
        constexpr std::size_t worth_keeping = 4096;
        if (text.capacity() > worth_keeping) text = std::string();
    });
}

// Has no effect where it gives false, so that the levels can begin anew.
bool CExpress::run_program() {
    if (m_Loaded != Loaded::program || m_LoadedGeneration != m_Para.generation() ||
        !m_Para.all_in_range() || !m_Program->run(m_Result)) {
        return false;
    }
    m_StrResult.clear();
    m_ResultType = m_Program->type();
    m_Loaded = Loaded::finished_program;
    return true;
}

void CExpress::calculate_by_levels() {
    need_tokens();
    m_ExtraArguments.clear();
    m_Texts.clear();

    Value value;
    get_exp(value);
    m_Result = value.number;
    m_StrResult = value.text;
    m_ResultType = value.type;
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
    drop_formula();
    m_Token = m_Prog;
    forget_faults();
}

void CExpress::serror(int n) {
    m_Status = 0;
    const auto message = morandel::error_message(n);
    if (!message) return;
    m_ErrorMessage = *message;
    m_ErrorNumber = n;
}
