// What the checker finds of a formula, and all else that the language accepts and a person rarely
// means.

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include <morandel/checker.h>

#include "base/characters.h"
#include "formula/prepared.h"
#include "language/operators.h"

namespace morandel::formula {
namespace {

int reason_of(const CheckFault& fault) {
    constexpr int too_few = 3;
    constexpr int too_many = 4;
    if (fault.kind == too_few) return MORANDEL_REASON_TOO_FEW;
    return fault.kind == too_many ? MORANDEL_REASON_TOO_MANY : MORANDEL_REASON_WRONG_KIND;
}

bool is_operator(std::string_view name) {
    return std::ranges::find(operator_table, name, &Operator::text) != std::end(operator_table);
}

// Whatever their case; and what the checker calls otherwise than formulas do.
bool names_alike(std::string_view token, std::string_view name) {
    static constexpr std::pair<std::string_view, std::string_view> others[] = {
        {"strims", "strtrims"}, {"Trim", "strtrim"}};
    const auto* other =
        std::ranges::find(others, name, &std::pair<std::string_view, std::string_view>::first);
    if (other != std::end(others)) name = other->second;
    return std::ranges::equal(token, name, {}, to_lower, to_lower);
}

// The kind that the fault's operand should have, as a type.
int wanted_type(const CheckexpressionError& fault) {
    const int kind = expected_kind(fault.strName, fault.nIndex);
    return kind == CExpressionCheck::kind_text     ? MORANDEL_TEXT
           : kind == CExpressionCheck::kind_number ? MORANDEL_NUMBER
                                                   : MORANDEL_DEDUCED;
}

// What is said of an operand of the wrong kind, of a function or operator as the formula has it.
void say_wrong_kind(Report& report, const CheckFault& fault, const std::string& name) {
    const bool wants_text = fault.wants == MORANDEL_TEXT;
    const std::string index = std::to_string(fault.operand);
    report.message = name + " 的第 " + index + " 个操作数应为" + (wants_text ? "字符串" : "数值");
    report.english = name + ": operand " + index + " must be a " + (wants_text ? "text" : "number");
}

}  // namespace

// A record of the checker tells where its function or sign ends, or the token after its operator.
// Where a call before it has left its step open, it tells that one's.
Extent Prepared::place_of(const std::string& name, std::size_t end, bool& is_own) const {
    const auto is_it = [&](Extent where) {
        return names_alike(m_formula.substr(where.begin, where.end - where.begin), name);
    };
    is_own = true;
    const Extent where = m_recording->token_ending_at(end, false);
    if (is_it(where)) return where;
    const Extent before = m_recording->token_ending_at(end, true);
    if (is_operator(name) && is_it(before)) return before;
    is_own = false;
    return m_recording->find_token(where.begin, is_it);
}

std::vector<CheckFault> Prepared::check() const {
    const PendingGuard guard;
    CExpressionCheck check;
    // Only what is told of a name is known of it; a text counts as nothing to the checker.
    check.SetNumberOfPara(static_cast<int>(m_told_numbers.count()));
    int index = 0;
    for (std::size_t i = 0; i < m_inside.size(); ++i) {
        if (!m_told_numbers[i] || !is_first_of_name(i)) continue;
        MYPARA number{m_inside[i], 0.0, ""};
        check.SetPara(&number, ++index, false);
    }
    (void)check.CheckExpression(m_formula.c_str());
    std::vector<CheckFault> faults;
    for (const CheckexpressionError& fault : check.m_errors) {
        bool is_own = false;
        const auto end = static_cast<std::size_t>(fault.nPosition);
        const Extent where = place_of(fault.strName, end, is_own);
        faults.push_back({fault.nType, fault.nIndex, wanted_type(fault), fault.strName, where,
                          position(where), is_own});
    }
    return faults;
}

// As though each name had a value: without one, the computation ends there.
void Prepared::add_warnings_of_computing(const std::vector<CheckFault>& faults,
                                         std::vector<Report>& reports) const {
    std::vector<std::string> names;
    Kinds texts;
    const auto add = [&](const std::string& name, bool is_text) {
        if (names.size() < most_names) texts[names.size()] = is_text;
        names.push_back(name);
    };
    for (std::size_t i = 0; i < m_inside.size(); ++i) {
        if (is_first_of_name(i) && m_recording->uses(m_inside[i])) add(m_inside[i], m_texts[i]);
    }
    for (const FreeName& name : m_recording->free_names()) add(name.name, name.type == type_text);
    if (names.size() > most_names) return;
    const Recording recording(m_formula, names, texts);
    for (const Extent call : recording.short_calls()) {
        const auto is_told = [call](const CheckFault& f) { return f.where.begin == call.begin; };
        if (std::ranges::any_of(faults, is_told)) continue;
        reports.push_back(report_of({-1, MORANDEL_REASON_CANNOT_SUFFICE, call}));
    }
    if (const auto& ignored = recording.ignored()) {
        const int reason =
            ignored->starts_token ? MORANDEL_REASON_NOT_COMPUTED : MORANDEL_REASON_NOT_READ;
        reports.push_back(report_of({-1, reason, ignored->where}));
    }
}

std::vector<Report> Prepared::warnings() const {
    std::vector<Report> reports;
    const std::vector<CheckFault> faults = check();
    for (const CheckFault& fault : faults) {
        // What is told of the arguments of another call's list says nothing of its own.
        if (!fault.is_own && fault.operand != 1) continue;
        if (!fault.is_own && reason_of(fault) != MORANDEL_REASON_WRONG_KIND) continue;
        Report& report = reports.emplace_back(report_of({-1, reason_of(fault), fault.where}));
        if (report.reason != MORANDEL_REASON_WRONG_KIND) continue;
        say_wrong_kind(report, fault, about({-1, report.reason, fault.where}));
    }
    add_warnings_of_computing(faults, reports);
    // The checker counts the arguments of some functions alone.
    for (const auto& [reason, where] : m_recording->miscounted_calls()) {
        const auto is_told = [begin = position(where).byte](const Report& report) {
            return report.position->byte == begin && report.reason != MORANDEL_REASON_WRONG_KIND;
        };
        if (std::ranges::none_of(reports, is_told)) {
            reports.push_back(report_of({-1, reason, where}));
        }
    }
    std::ranges::sort(reports, {},
                      [](const Report& r) { return std::pair(r.position->byte, r.reason); });
    return reports;
}

}  // namespace morandel::formula
