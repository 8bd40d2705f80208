// The checker's object: one check, its steps and its records.

#include "checker/checker.h"

#include <stdexcept>

#include "engine/gbk.h"

CExpressionCheck::CExpressionCheck() = default;
CExpressionCheck::~CExpressionCheck() = default;

bool CExpressionCheck::CheckExpression(const char* text) {
    m_faulty = false;
    m_step = -1;
    m_depth = 0;
    m_argMarks.clear();
    m_resultKind = kind_open;
    if (SetExpression(text) == 0) return false;
    if (GetStatu() == 0) {
        m_current = {0, 0, 0, std::string(morandel::gbk<"表达公式字符常量书写有误">)};
        return true;
    }
    rewind();
    Checkget_exp(m_resultKind);
    return m_faulty;
}

void CExpressionCheck::Reset() {
    m_errors.clear();
    m_argKinds.clear();
    m_tokenCount = 0;
}

const CheckexpressionError& CExpressionCheck::GetExpressionError(int index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= m_errors.size()) {
        throw std::invalid_argument("no such fault");
    }
    return m_errors[static_cast<std::size_t>(index)];
}

int CExpressionCheck::CountCommaCheck() {
    const auto step = static_cast<std::size_t>(m_step);
    seek(m_step >= 0 && step < m_positions.size() ? m_positions[step].next_token : 0);
    get_token();  // the "(" of the list

    int commas = 0;
    int depth = 0;
    while (m_TokenType != morandel::NONE) {
        get_token();
        if (at(')')) {
            if (depth == 0) break;
            --depth;
        }
        if (at('(')) ++depth;
        if (at(',') && depth == 0) ++commas;
    }
    get_token();
    return commas;
}

int CExpressionCheck::GetCommaNum() {
    return m_depth == 2 ? GetLocalNumber() : static_cast<int>(m_argMarks.size());
}

int CExpressionCheck::GetLocalNumber() {
    return static_cast<int>(m_commaMarks.count());
}

void CExpressionCheck::InitStep() {
    --m_step;
    --m_depth;
}

void CExpressionCheck::InitTempHolde(int* /*errorFlag*/, int /*count*/) {
    forget_arguments(CountCommaCheck());
}

void CExpressionCheck::forget_arguments(int count) {
    for (int i = 0; i < count; ++i) {
        if (!m_argMarks.empty()) m_argMarks.pop_back();
        if (!m_argKinds.empty()) m_argKinds.pop_back();
    }
}

void CExpressionCheck::open_step(std::size_t next_token, int position) {
    ++m_step;
    ++m_depth;
    const auto step = static_cast<std::size_t>(m_step);
    if (step >= m_positions.size()) m_positions.resize(step + 1);
    m_positions[step] = {next_token, position};
}

void CExpressionCheck::record(const char* name, int type, int index) {
    m_faulty = true;
    const auto step = static_cast<std::size_t>(m_step);
    m_current = {type, m_positions[step].position, index, name};
    m_errors.push_back(m_current);
}
