// The face of the checker.

#include <morandel/checker.h>

#include <stdexcept>

#include "base/gbk.h"
#include "checker/checking.h"
#include "engine/levels.h"

CExpressionCheck::CExpressionCheck() : m_pChecking(std::make_unique<morandel::Checking>(*this)) {}
CExpressionCheck::~CExpressionCheck() = default;

bool CExpressionCheck::CheckExpression(const char* text) {
    m_pChecking->start();
    if (SetExpression(text) == 0) return false;
    if (GetStatu() == 0) {
        m_current = {0, 0, 0, std::string(morandel::gbk<U"表达公式字符常量书写有误">)};
        return true;
    }
    return m_pChecking->CheckExpression();
}

bool morandel::Checking::CheckExpression() {
    m_face.evaluator().tokens().seek(0);
    Levels<Checking&, Checking&>(*this, *this).get_exp();
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
    return m_pChecking->CountCommaCheck();
}

int CExpressionCheck::GetCommaNum() {
    return m_pChecking->GetCommaNum();
}

int CExpressionCheck::GetLocalNumber() {
    return m_pChecking->GetLocalNumber();
}

void CExpressionCheck::InitStep() {
    m_pChecking->InitStep();
}

void CExpressionCheck::InitTempHolde(int* /*errorFlag*/, int /*count*/) {
    m_pChecking->forget_arguments(CountCommaCheck());
}
