#include "engine/evaluator.h"

#include <cstring>
#include <memory>

#include "base/floating_point.h"
#include "base/gbk.h"
#include "engine/levels.h"
#include "engine/well_formed_text.h"

namespace morandel {

Evaluator::Evaluator(std::string& result, std::string& message, int& status)
    : m_faults{status, message}, m_StrResult(result) {
    m_program.steps.reserve(32);  // most programs have no more
    m_Formula[0] = '\0';
    g_NumArray().clear();
}

int Evaluator::SetExpression(const char* text) {
    if (text == nullptr) {
        m_faults.m_ErrorMessage = gbk<U"公式为空">;
        m_faults.m_ErrorNumber = -1;
        return 0;
    }
    if (m_settled != m_Para.generation() || std::strcmp(text, m_Formula) != 0) return load(text);
    // It would be accepted just as it was last time.
    m_faults.forget();
    m_ExpressionStatus = 0;
    m_tokens.set_last_read(m_accepting_leaves);
    m_tokens.seek(0);
    return 1;
}

int Evaluator::load(const char* text) {
    const void* terminator = std::memchr(text, '\0', longest_formula + 1);
    if (terminator == nullptr) return 0;
    const auto length = static_cast<std::size_t>(static_cast<const char*>(terminator) - text);

    // Should memory run out on the way, there is no formula.
    drop_formula();
    m_registers.make_room(length);
    // The text may be this evaluator's own message, so it is copied before that goes.
    std::memcpy(m_Formula, text, length + 1);
    m_faults.forget();
    if (accept()) return 1;
    drop_formula();
    return 0;
}

void Evaluator::drop_formula() {
    m_Formula[0] = '\0';
    m_tokens.clear();
    m_recorded.generation = 0;
    m_settled = 0;
}

bool Evaluator::accept() {
    DefaultFloatingPointIfNeeded environment;
    Levels<WellFormedText> levels({m_Formula, m_Para, environment}, {m_program, m_registers});
    levels.get_exp();
    const WellFormedText& text = levels.source();
    if (!text.is_accepted() && VerifyExpression() == 0) return false;
    m_ExpressionStatus = 0;

    if (text.is_accepted() && m_program.lacks.empty()) {
        m_variables.clear();
        m_accepting_leaves = text.last_read();
        m_tokens.set_last_read(m_accepting_leaves);
        m_settled = m_Para.generation();
        m_recorded = {m_settled, 0, TokenReader::end_position, text.needs(), m_accepting_leaves};
        return true;
    }
    tokens().seek(0);
    m_variables.list(m_tokens);
    m_tokens.seek(0);
    m_accepting_leaves = m_tokens.last_read();
    if (m_variables.count() == 0 && m_faults.m_Status != 0) m_settled = m_Para.generation();
    return true;
}

int Evaluator::VerifyExpression() { return verify(tokens(), m_faults, m_ExpressionStatus) ? 1 : 0; }

TokenReader& Evaluator::tokens() {
    if (m_tokens.empty()) m_tokens.cut(m_Formula);
    return m_tokens;
}

int Evaluator::CalcExpression() {
    const DefaultFloatingPoint environment;
    if (!is_recorded()) record();
    m_tokens.seek(m_recorded.end);
    m_tokens.set_last_read(m_recorded.leaves);

    if (m_program.is_numeric && m_Para.all_in_range() &&
        run_numbers(m_program, m_registers.numbers())) {
        m_Result = m_registers.numbers()[m_program.result];
        m_ResultType = m_program.type;
        m_StrResult.clear();
    } else {
        ArgumentStack<double>& numbers = g_NumArray();
        m_pending.prepare(numbers);
        const Value value = m_machine.run(m_program, numbers);
        m_Result = value.number;
        m_ResultType = value.type;
        m_pending.keep();
        m_StrResult = value.text;
    }
    return m_faults.m_Status != 0 ? 1 : 0;
}

bool Evaluator::is_recorded() const {
    return m_recorded.generation == m_Para.generation() && m_recorded.start == m_tokens.tell() &&
           (m_recorded.needs == LastRead::nothing || m_recorded.needs == m_tokens.last_read());
}

// From the reading position on.
void Evaluator::record() {
    TokenReader& source = tokens();
    m_recorded.generation = 0;
    const std::uint16_t start = source.tell();
    const LastRead needs = source.last_read();
    source.get_exp(m_program, m_registers);
    m_recorded = {m_Para.generation(), start, source.tell(), needs, source.last_read()};
}

Evaluator::Memory Evaluator::memory() const {
    return {g_NumArray().changes() + m_pending.m_TempStr.changes(),
            m_tokens.last_read() == LastRead::number};
}

}  // namespace morandel

// The face.

CExpress::CExpress()
    : m_pEvaluator(std::make_unique<morandel::Evaluator>(m_StrResult, m_ErrorMessage, m_Status)) {}

CExpress::~CExpress() = default;

int CExpress::SetNumberOfPara(int n) { return m_pEvaluator->parameters().set_count(n) ? 1 : 0; }

int CExpress::SetPara(MYPARA* para, int index, bool isString) {
    morandel::Parameters& parameters = m_pEvaluator->parameters();
    if (para == nullptr || index < 1 || index > parameters.count()) return 0;
    const auto slot = static_cast<std::size_t>(index - 1);
    parameters.set(slot, para->name, isString, para->value, para->strValue);
    return 1;
}

int CExpress::SetExpression(const char* text) { return m_pEvaluator->SetExpression(text); }

int CExpress::VerifyExpression() { return m_pEvaluator->VerifyExpression(); }

int CExpress::CalcExpression() { return m_pEvaluator->CalcExpression(); }

double CExpress::GetResult() { return m_pEvaluator->GetResult(); }

int CExpress::GetResultType() { return m_pEvaluator->GetResultType(); }

int CExpress::GetStatu() { return m_Status; }

int CExpress::GetExpressionStatus() { return m_pEvaluator->GetExpressionStatus(); }

int CExpress::GetErrorNumber() { return m_pEvaluator->faults().m_ErrorNumber; }

VariableNode* CExpress::GetVariableList() { return m_pEvaluator->variables().first(); }

int CExpress::GetVariableNum() { return m_pEvaluator->variables().count(); }

std::string CExpress::GetVariable(int index, int* type) {
    if (index < 1 || index > GetVariableNum()) return {};
    const VariableNode& node = m_pEvaluator->variables()[static_cast<std::size_t>(index - 1)];
    if (type != nullptr) *type = node.type;
    return node.name;
}

void CExpress::ClearOld() {
    SetNumberOfPara(0);
    m_pEvaluator->drop_formula();
    m_pEvaluator->faults().forget();
}
