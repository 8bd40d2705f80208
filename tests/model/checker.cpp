#include "tests/model/checker.h"

#include "tests/model/words.h"

namespace model {
namespace {

bool fits(int kind, int expected) {
    if (kind == Checker::kind_variable) return true;
    return (kind == Checker::kind_text) == (expected == Checker::kind_text);
}

}  // namespace

bool Checker::CheckExpression(const char* text) {
    m_faulty = false;
    m_step = -1;
    m_depth = 0;
    m_argMarks.clear();
    m_resultKind = kind_open;
    if (SetExpression(text) == 0) return false;
    if (GetStatu() == 0) {
        m_current = {0, 0, 0, gbk("表达公式字符常量书写有误")};
        return true;
    }
    m_Prog = 0;
    get_exp(m_resultKind);
    return m_faulty;
}

void Checker::Reset() {
    m_errors.clear();
    m_argKinds.clear();
    m_tokenCount = 0;
}

// Leaves the reading position behind the list of the step under way.
int Checker::CountCommaCheck() {
    const auto step = static_cast<std::size_t>(m_step);
    m_Prog = m_step >= 0 && step < m_positions.size() ? m_positions[step].next_token : 0;
    if (m_Prog >= m_Tokens.size()) m_Prog = m_Tokens.size() - 1;
    get_token();  // the "(" of the list

    int commas = 0;
    int depth = 0;
    while (m_TokenType != NONE) {
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

int Checker::GetCommaNum() const {
    return m_depth == 2 ? GetLocalNumber() : static_cast<int>(m_argMarks.size());
}

void Checker::InitStep() {
    --m_step;
    --m_depth;
}

void Checker::open_step() {
    ++m_step;
    ++m_depth;
    const auto step = static_cast<std::size_t>(m_step);
    if (step >= m_positions.size()) m_positions.resize(step + 1);
    m_positions[step] = {m_Prog, token().end};
}

void Checker::forget_arguments(int count) {
    for (int i = 0; i < count; ++i) {
        if (!m_argMarks.empty()) m_argMarks.pop_back();
        if (!m_argKinds.empty()) m_argKinds.pop_back();
    }
}

void Checker::record(const char* name, int type, int index) {
    m_faulty = true;
    m_current = {type, m_positions[static_cast<std::size_t>(m_step)].position, index, name};
    m_errors.push_back(m_current);
}

void Checker::check_prefix(char code, int& kind) {
    if (code == '-') {
        if (!fits(kind, kind_number)) record("-", 1, 1);
        kind = kind_number;
    }
    if (code == '-' || code == '+') return InitStep();
    check_call(rule_of_code(code), kind);
}

void Checker::check_operator(char code, int& left, int right) {
    const OperatorRule& rule = rule_of_operator(code);
    if (!fits(left, rule.kind)) record(rule.name, rule.left_fault, 1);
    if (!fits(right, rule.kind)) record(rule.name, rule.right_fault, 2);
    InitStep();
    left = kind_number;
}

void Checker::check_call(const CheckRule& rule, int& kind) {
    const bool is_text_function = function_of_code(rule.code)->carrier == Carrier::text;
    if (!fits(kind, rule.first_kind)) {
        record(rule.name, rule.first_fault, 1);
        if (is_text_function) serror(text_expected);
    }
    if (rule.commas) {
        const int commas = CountCommaCheck();
        if (commas < rule.commas->fewest) record(rule.name, 3, 1);
        if (rule.commas->most >= 0 && commas > rule.commas->most) record(rule.name, 4, 0);
        // From the last argument to the second.
        const auto count = static_cast<std::size_t>(commas);
        for (std::size_t i = 0; i < count && i < m_argKinds.size(); ++i) {
            const std::size_t comma = count - 1 - i;
            if (comma >= m_argMarks.size()) continue;
            const int expected = further_kind(rule.further_kinds, comma);
            const auto found = static_cast<int>(m_argKinds[m_argKinds.size() - 1 - i]);
            if (expected < 0 || fits(found, expected)) continue;
            record(rule.name, expected, static_cast<int>(comma) + 2);
            serror(text_expected);
        }
        forget_arguments(commas);
    }
    if (rule.closes_step) InitStep();
    kind = rule.result_kind;
}

}  // namespace model
