// The face of the checker.

#include <morandel/checker.h>

#include <stdexcept>

#include "base/gbk.h"
#include "checker/checking.h"
#include "engine/levels.h"

CExpressionCheck::CExpressionCheck() : m_pChecking(std::make_unique<morandel::Checking>(*this)) {}
CExpressionCheck::~CExpressionCheck() = default;

bool CExpressionCheck::CheckExpression(const char* text) {
    using morandel::Checking;
    m_step = -1;
    m_depth = 0;
    m_pChecking->m_arguments = 0;
    m_resultKind = kind_open;
    if (SetExpression(text) == 0) return false;
    if (GetStatu() == 0) {
        m_current = {0, 0, 0, std::string(morandel::gbk<U"表达公式字符常量书写有误">)};
        return true;
    }
    const std::size_t faults = m_errors.size();
    evaluator().tokens().seek(0);
    morandel::Levels<Checking&, Checking&>(*m_pChecking, *m_pChecking).get_exp();
    return m_errors.size() > faults;
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
    morandel::TokenReader& tokens = evaluator().tokens();
    const auto step = static_cast<std::size_t>(m_step);
    const auto& positions = m_pChecking->m_positions;
    tokens.seek(m_step >= 0 && step < positions.size() ? positions[step].next_token : 0);
    tokens.get_token();  // the "(" of the list

    int commas = 0;
    int depth = 0;
    while (!tokens.at(morandel::TokenClass::end)) {
        tokens.get_token();
        if (tokens.at(')') && depth-- == 0) break;
        if (tokens.at('(')) ++depth;
        if (tokens.at(',') && depth == 0) ++commas;
    }
    tokens.get_token();
    return commas;
}

int CExpressionCheck::GetCommaNum() {
    return m_depth == 2 ? GetLocalNumber() : static_cast<int>(m_pChecking->m_arguments);
}

int CExpressionCheck::GetLocalNumber() {
    return static_cast<int>(m_pChecking->m_comma_marks.count());
}

void CExpressionCheck::InitStep() {
    --m_step;
    --m_depth;
}

void CExpressionCheck::InitTempHolde(int* /*errorFlag*/, int /*count*/) {
    m_pChecking->forget_arguments(static_cast<std::size_t>(CountCommaCheck()));
}
