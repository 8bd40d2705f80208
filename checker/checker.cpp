// The walk of a check, and the face of the checker.

#include <morandel/checker.h>

#include <algorithm>
#include <stdexcept>

#include "base/gbk.h"
#include "checker/checking.h"
#include "engine/levels.h"

namespace morandel {

OperandKind Checking::operand() const {
    if (!token().is_constant()) return OperandKind::none;
    if (token().m_IsStringLiteral) return OperandKind::text;
    return m_tokens.last_read() == LastRead::number ? OperandKind::number : OperandKind::none;
}

// A name without a value is an operand of any kind.
int Checking::may_miss_operand(Checking& /*this*/) {
    ++m_face.m_tokenCount;
    if (!token().is(TokenClass::name)) return serror(Error::bad_expression);
    get_token();
    return kind_variable;
}

// Its step opens at the token after it.
void Checking::take_operator() {
    ++m_face.m_tokenCount;
    get_token();
    open_step();
}

int Checking::open() {
    ++m_face.m_tokenCount;
    m_comma_marks.reset();
    return 0;
}

char Checking::begin_call(char code) {
    ++m_face.m_tokenCount;
    open_step();
    return code;
}

void Checking::further_argument(std::size_t place, int kind) {
    ++m_face.m_tokenCount;
    m_comma_marks.set(place);
    ++m_arguments;
    m_face.m_argKinds.push_back(static_cast<std::uint32_t>(kind));
}

// At the token in hand.
void Checking::open_step() {
    ++m_face.m_depth;
    const auto step = static_cast<std::size_t>(++m_face.m_step);
    if (step >= m_positions.size()) m_positions.resize(step + 1);
    m_positions[step] = {m_tokens.tell(), token().end};
}

void Checking::record(std::string_view name, int type, int index) {
    const auto step = static_cast<std::size_t>(m_face.m_step);
    m_face.m_current = {type, m_positions[step].position, index, std::string(name)};
    m_face.m_errors.push_back(m_face.m_current);
}

int Checking::serror(Error error) {
    m_face.evaluator().faults().serror(error);
    return kind_open;
}

void Checking::forget_arguments(int count) {
    std::vector<std::uint32_t>& kinds = m_face.m_argKinds;
    const auto wanted = static_cast<std::size_t>(count);
    m_arguments -= std::min(wanted, m_arguments);
    kinds.resize(kinds.size() - std::min(wanted, kinds.size()));
}

}  // namespace morandel

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
        m_current = {0, 0, 0, std::string(morandel::gbk<"表达公式字符常量书写有误">)};
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
    m_pChecking->forget_arguments(CountCommaCheck());
}
