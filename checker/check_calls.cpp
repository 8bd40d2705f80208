// What operators and functions require of their operands, by the tables of rules.cpp. Stands
// beside the calculation that engine/arithmetic.cpp and strfuncs/ do.

#include "checker/checker.h"
#include "checker/rules.h"
#include "engine/functions.h"

using morandel::Carrier;
using morandel::CheckRule;
using morandel::Error;
using morandel::fits;
using morandel::OperatorRule;

namespace {

constexpr int too_few = 3;
constexpr int too_many = 4;

bool is_carried_by(char code, Carrier carrier) {
    const morandel::Function* row = morandel::function_of_code(code);
    return row != nullptr && row->carrier == carrier;
}

}  // namespace

// Signs and the functions of one argument.
void CExpressionCheck::Checkunary(char code, int& kind) {
    if (code == '-') {
        if (!fits(kind, kind_number)) record("-", 1, 1);
        kind = kind_number;
    }
    if (code == '-' || code == '+') return InitStep();
    if (is_carried_by(code, Carrier::numeric)) check_call(*morandel::rule_of_code(code), kind);
}

// The operators of numbers, and the functions that are computed like them.
void CExpressionCheck::Checkatith(char code, int& left, int right) {
    if (is_carried_by(code, Carrier::arithmetic)) {
        check_call(*morandel::rule_of_code(code), left);
    } else {
        check_operator(code, left, right);
    }
}

void CExpressionCheck::Check_Mul_atith(char code, int& left, int right) {
    check_operator(code, left, right);
}

void CExpressionCheck::CheckStringFunction(char code, int& kind) {
    if (is_carried_by(code, Carrier::arithmetic)) return Checkatith(code, kind, kind_open);
    if (is_carried_by(code, Carrier::text)) check_call(*morandel::rule_of_code(code), kind);
}

void CExpressionCheck::check_operator(char code, int& left, int right) {
    const OperatorRule& rule = *morandel::rule_of_operator(code);
    if (!fits(left, rule.kind)) record(rule.name, rule.left_fault, 1);
    if (!fits(right, rule.kind)) record(rule.name, rule.right_fault, 2);
    InitStep();
    left = kind_number;
}

void CExpressionCheck::check_call(const CheckRule& rule, int& kind) {
    CheckHead(rule, kind);
    if (rule.commas) {
        // Counting leaves the reading position behind the call, where the levels go on.
        const int commas = CountCommaCheck();
        CheckShortParameters(commas, rule.commas->fewest, rule.name);
        if (rule.commas->most >= 0) CheckExtraParameters(commas, rule.commas->most, rule.name);
        CheckParameters(commas, rule);
        forget_arguments(commas);
    }
    if (rule.closes_step) InitStep();
    kind = rule.result_kind;
}

void CExpressionCheck::CheckHead(const CheckRule& rule, int kind) {
    if (fits(kind, rule.first_kind)) return;
    record(rule.name, rule.first_fault, 1);
    if (is_carried_by(rule.code, Carrier::text)) serror(Error::text_expected);
}

void CExpressionCheck::CheckShortParameters(int commas, int fewest, const char* name) {
    if (commas < fewest) record(name, too_few, 1);
}

void CExpressionCheck::CheckExtraParameters(int commas, int most, const char* name) {
    if (commas > most) record(name, too_many, 0);
}

// From the last argument to the second.
void CExpressionCheck::CheckParameters(int commas, const CheckRule& rule) {
    const auto count = static_cast<std::size_t>(commas);
    for (std::size_t i = 0; i < count && i < m_argKinds.size(); ++i) {
        const std::size_t comma = count - 1 - i;
        if (comma >= m_argMarks.size()) continue;
        const int expected = morandel::further_kind(rule.further_kinds, comma);
        const auto kind = static_cast<int>(m_argKinds[m_argKinds.size() - 1 - i]);
        if (expected < 0 || fits(kind, expected)) continue;
        record(rule.name, expected, static_cast<int>(comma) + 2);
        serror(Error::text_expected);
    }
}
