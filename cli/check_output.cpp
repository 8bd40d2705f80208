#include "cli/check_output.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>

#include "cli/encoding.h"
#include "cli/evaluate.h"
#include "cli/output.h"
#include "cli/picture.h"
#include "cli/syntax.h"
#include "cli/tree.h"
#include "cli/warning_output.h"

namespace morandel::cli {
namespace {

// What the records call by other names.
constexpr std::pair<std::string_view, std::string_view> record_names[] = {
    {"Trim", "strtrim"}, {"strims", "strtrims"}, {"R2S", "r2s"}, {"S2R", "s2r"}};

std::string own_name(const CheckexpressionError& fault) {
    for (const auto& [record, own] : record_names) {
        if (fault.strName == record) return std::string(own);
    }
    return fault.strName;
}

// The record's own type is not always what was wanted: strtrim of a number says 1.
bool wants_text(const std::string& name, std::size_t operand) {
    if (name == "like" || name == "equal") return true;
    const Function* function = find_function(name);
    return function != nullptr && wanted_kind(*function, operand) == Kind::text;
}

Message fault_message(const CheckexpressionError& fault) {
    const std::string name = own_name(fault);
    if (fault.nType == 3) return say("{0}: too few arguments", name);
    if (fault.nType == 4) return say("{0}: too many arguments", name);
    const auto operand = static_cast<std::size_t>(std::max(fault.nIndex, 1));
    return wrong_kind_message(name, operand, wants_text(name, operand - 1));
}

// The record's position is just past a function or a sign, and for an operator just past the token
// after it. The picture shows the operand itself.
Remark place_of(const CheckexpressionError& fault, const Tree& tree) {
    const auto position = static_cast<std::size_t>(fault.nPosition);
    const std::string name = own_name(fault);
    for (const Node& node : tree.nodes) {
        if (node.type != Node::Type::call && node.type != Node::Type::operation) continue;
        const FormulaToken& token = tree.tokens[node.token];
        const bool is_infix = node.type == Node::Type::operation && node.begin < token.position;
        const std::size_t recorded = is_infix && node.token + 1 < tree.tokens.size()
                                         ? tree.tokens[node.token + 1].end()
                                         : token.end();
        if (token.lower() != name || recorded != position) continue;
        const auto operand = static_cast<std::size_t>(fault.nIndex) - 1;
        const bool has_operand =
            fault.nIndex > 0 && fault.nType < 3 && operand < node.children.size();
        if (!has_operand) return {token.position, token.text.size(), {}};
        const Node& child = tree.nodes[node.children[operand]];
        return {child.begin, child.end - child.begin, {}};
    }
    return {position, 1, {}};
}

void print_fault(const Warning& fault, const std::string& formula) {
    print_line(without_control(fault.message.shown()));
    print_line(painted_picture(picture(formula, fault.position, fault.length), stdout));
}

nlohmann::json fault_json(const CheckexpressionError& fault) {
    return {{"nType", fault.nType},
            {"nPosition", fault.nPosition},
            {"nIndex", fault.nIndex},
            {"strName", to_utf8(fault.strName)}};
}

}  // namespace

int print_check(const std::string& formula, const std::vector<Variable>& variables,
                const Style& style) {
    // What the library refuses is told as an evaluation tells it.
    Evaluator evaluator;
    evaluator.set_variables(variables);
    const Outcome loaded = evaluator.load(formula);
    if (!loaded.succeeded) return print_outcome(loaded, style);

    // To the checker a parameter that is a text has no kind, so it learns of numbers alone.
    std::vector<Variable> numbers = variables;
    std::erase_if(numbers, [](const Variable& v) { return kind_of(v.value) == Kind::text; });
    CExpressionCheck check;
    declare(check, numbers);
    const std::string text = to_gbk(formula);
    const bool faulty = check.CheckExpression(text.c_str());
    const Tree tree = tree_of(text);
    std::vector<Warning> told;
    for (const CheckexpressionError& fault : check.m_errors) {
        const Remark place = place_of(fault, tree);
        told.push_back({place.position, place.length, {}, fault_message(fault)});
        if (style.json) {
            print_line(fault_json(fault));
        } else {
            print_fault(told.back(), text);
        }
    }
    // A fault of the text itself that leaves no record, such as what follows a factorial.
    if (told.empty() && (faulty || check.GetStatu() != 1)) {
        return print_outcome(evaluator.failure_of(check), style);
    }
    bool is_well = told.empty();
    if (style.quiet) return is_well ? 0 : 1;
    for (const Warning& warning : warnings_of(text, kinds_among(variables))) {
        const auto is_same = [&](const Warning& other) {
            return other.position == warning.position &&
                   other.message.english == warning.message.english;
        };
        if (std::ranges::any_of(told, is_same)) continue;
        is_well = false;
        if (style.json) {
            print_line(warning_json(warning, text));
        } else {
            print_fault(warning, text);
        }
    }
    return is_well ? 0 : 1;
}

}  // namespace morandel::cli
