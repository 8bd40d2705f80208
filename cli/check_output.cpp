#include "cli/check_output.h"

#include "checker/rules.h"
#include "cli/encoding.h"
#include "cli/output.h"

namespace morandel::cli {
namespace {

// In words. The record's own type is not always what was wanted: strtrim of a number says 1.
std::string fault_text(const CheckexpressionError& fault) {
    if (fault.nType == 3) return fault.strName + ": too few arguments";
    if (fault.nType == 4) return fault.strName + ": too many arguments";
    const int wanted = expected_kind(fault.strName, fault.nIndex);
    return fault.strName + ": operand " + std::to_string(fault.nIndex) + " must be a " +
           (wanted == CExpressionCheck::kind_text ? "string" : "number");
}

// Cells that a text takes on a terminal: Chinese characters and full-width forms take two.
std::size_t cells_of(std::string_view utf8) {
    std::size_t cells = 0;
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x80 && byte < 0xC0) continue;  // not the first byte of a character
        // From U+3000 on, where UTF-8 begins with E3.
        cells += byte >= 0xE3 ? 2 : 1;
    }
    return cells;
}

void print_fault(const CheckexpressionError& fault, const std::string& formula) {
    const std::string before = to_gbk(formula).substr(0, static_cast<std::size_t>(fault.nPosition));
    print_line(fault_text(fault));
    print_line("    " + formula);
    print_line(std::string(4 + cells_of(to_utf8(before)), ' ') + "^");
}

nlohmann::json fault_json(const CheckexpressionError& fault) {
    return {{"nType", fault.nType},
            {"nPosition", fault.nPosition},
            {"nIndex", fault.nIndex},
            {"strName", to_utf8(fault.strName)}};
}

}  // namespace

int print_check(const std::string& formula, const std::vector<Variable>& variables, bool as_json) {
    // What the library refuses is told as an evaluation tells it.
    Evaluator evaluator;
    evaluator.set_variables(variables);
    const Outcome loaded = evaluator.load(formula);
    if (!loaded.succeeded) return print_outcome(loaded, as_json);

    CExpressionCheck check;
    declare(check, variables);
    const bool faulty = check.CheckExpression(to_gbk(formula).c_str());
    for (const CheckexpressionError& fault : check.m_errors) {
        if (as_json) {
            print_line(fault_json(fault));
        } else {
            print_fault(fault, formula);
        }
    }
    if (!check.m_errors.empty()) return 1;
    if (!faulty && check.GetStatu() == 1) return 0;
    // A fault of the text itself that leaves no record, such as what follows a factorial.
    Outcome outcome = failed(to_utf8(check.m_ErrorMessage));
    outcome.error = check.GetErrorNumber();
    return print_outcome(outcome, as_json);
}

}  // namespace morandel::cli
