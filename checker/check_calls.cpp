// What operators and functions require of their operands, by their rows in the table of the
// language, and the kinds of their results.

#include <algorithm>
#include <iterator>

#include "checker/checking.h"
#include "language/operators.h"

namespace morandel {

void Checking::open_step() {
    ++m_face.m_depth;
    const auto step = static_cast<std::size_t>(++m_face.m_step);
    if (step >= m_positions.size()) m_positions.resize(step + 1);
    m_positions[step] = {m_tokens.tell(), token().end};
}

void Checking::further_argument(std::size_t place, int kind) {
    ++m_face.m_tokenCount;
    m_comma_marks.set(place);
    ++m_arguments;
    m_face.m_argKinds.push_back(static_cast<std::uint32_t>(kind));
}

int Checking::atith(char code, int left, int right) {
    const Operator& row = *operator_of_code(code);
    const int expected = row.texts != nullptr ? kind_text : kind_number;
    if (!fits(left, expected)) record(row.text, row.left_fault, 1);
    if (!fits(right, expected)) record(row.text, row.right_fault, 2);
    m_face.InitStep();
    return kind_number;
}

int Checking::end_call(int kind, char code) {
    if (const FunctionRow* row = function_of_code(code)) return CheckStringFunction(*row, kind);
    if (code == '-' && !fits(kind, kind_number)) record("-", 1, 1);
    m_face.InitStep();
    return code == '-' ? int{kind_number} : kind;
}

int Checking::CheckStringFunction(const FunctionRow& row, int kind) {
    constexpr int too_few = 3;
    constexpr int too_many = 4;
    const CheckRule& rule = row.check;
    if (!fits(kind, row.kind_at(0))) {
        record(rule.name, rule.first_fault.value_or(row.kind_at(0)), 1);
        if (row.body.routine != nullptr && rule.tells_error) serror(Error::text_expected);
    }
    // Of one that takes a single argument, others are neither checked nor forgotten when it ends.
    if (rule.kinds.size() > 1) {
        // Counting leaves the reading position behind the call, where the levels go on.
        const auto commas = static_cast<std::size_t>(m_face.CountCommaCheck());
        const auto [fewest, most] = argument_counts(rule.kinds);
        if (commas + 1 < fewest) record(rule.name, too_few, 1);
        if (commas + 1 > most) record(rule.name, too_many, 0);
        CheckParameters(row, commas);
        forget_arguments(commas);
    }
    if (rule.closes_step) m_face.InitStep();
    return rule.result_kind;
}

// From the last argument to the second.
void Checking::CheckParameters(const FunctionRow& row, std::size_t commas) {
    auto kind = m_face.m_argKinds.crbegin();
    for (; commas > 0 && kind != m_face.m_argKinds.crend(); --commas, ++kind) {
        const int expected = row.kind_at(commas);
        if (commas > m_arguments || expected < 0) continue;
        if (fits(static_cast<int>(*kind), expected)) continue;
        record(row.check.name, expected, static_cast<int>(commas) + 1);
        serror(Error::text_expected);
    }
}

void Checking::forget_arguments(std::size_t count) {
    std::vector<std::uint32_t>& kinds = m_face.m_argKinds;
    m_arguments -= std::min(count, m_arguments);
    kinds.resize(kinds.size() - std::min(count, kinds.size()));
}

int expected_kind(const std::string& name, int index) {
    for (const FunctionRow* row : function_index) {
        if (row == nullptr || row->check.name != name) continue;
        return row->kind_at(static_cast<std::size_t>(std::max(index, 1)) - 1);
    }
    const auto* sign = std::ranges::find(operator_table, name, &Operator::text);
    if (sign == std::end(operator_table)) return -1;
    return sign->texts != nullptr ? kind_text : kind_number;
}

}  // namespace morandel
