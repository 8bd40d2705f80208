// What operators and functions require of their operands, by their rows in the table of the
// language.

#include <algorithm>
#include <iterator>

#include "checker/checking.h"
#include "language/operators.h"

namespace morandel {
namespace {

constexpr int too_few = 3;
constexpr int too_many = 4;

}  // namespace

// Of a sign.
int Checking::Checkunary(char code, int kind) {
    if (code == '-' && !fits(kind, kind_number)) record("-", 1, 1);
    InitStep();
    return code == '-' ? int{kind_number} : kind;
}

int Checking::check_operator(char code, int left, int right) {
    const Operator& row = *operator_of_code(code);
    const int expected = row.texts != nullptr ? kind_text : kind_number;
    if (!fits(left, expected)) record(row.text, row.left_fault, 1);
    if (!fits(right, expected)) record(row.text, row.right_fault, 2);
    InitStep();
    return kind_number;
}

int Checking::CheckStringFunction(const FunctionRow& row, int kind) {
    CheckHead(row, kind);
    // Of one that takes a single argument, others are neither checked nor forgotten when it ends.
    if (row.kinds.size() > 1) {
        // Counting leaves the reading position behind the call, where the levels go on.
        const int commas = CountCommaCheck();
        CheckShortParameters(commas, row);
        CheckExtraParameters(commas, row);
        CheckParameters(commas, row);
        forget_arguments(commas);
    }
    if (row.check.closes_step) InitStep();
    return row.check.result_kind;
}

void Checking::CheckHead(const FunctionRow& row, int kind) {
    if (fits(kind, row.kind_at(0))) return;
    record(row.check.name, row.check.first_fault.value_or(row.kind_at(0)), 1);
    if (row.body.routine != nullptr && row.check.tells_error) serror(Error::text_expected);
}

void Checking::CheckShortParameters(int commas, const FunctionRow& row) {
    const std::string_view kinds = row.check.kinds;
    const auto required = static_cast<int>(kinds.substr(0, kinds.find_first_of("[*")).size());
    if (commas < required - 1) record(row.check.name, too_few, 1);
}

void Checking::CheckExtraParameters(int commas, const FunctionRow& row) {
    const std::string_view kinds = row.check.kinds;
    const auto possible = std::ranges::count_if(kinds, [](char kind) { return kind != '['; });
    if (commas >= possible && !kinds.ends_with('*')) record(row.check.name, too_many, 0);
}

// From the last argument to the second.
void Checking::CheckParameters(int commas, const FunctionRow& row) {
    const auto count = static_cast<std::size_t>(commas);
    const std::vector<std::uint32_t>& kinds = m_face.m_argKinds;
    for (std::size_t i = 0; i < count && i < kinds.size(); ++i) {
        const std::size_t comma = count - 1 - i;
        if (comma >= m_argument_marks.size()) continue;
        const int expected = row.kind_at(comma + 1);
        const auto kind = static_cast<int>(kinds[kinds.size() - 1 - i]);
        if (expected < 0 || fits(kind, expected)) continue;
        record(row.check.name, expected, static_cast<int>(comma) + 2);
        serror(Error::text_expected);
    }
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
