#include "cli/evaluate.h"

#include <algorithm>
#include <utility>

#include "cli/encoding.h"
#include "cli/error_help.h"
#include "cli/picture.h"
#include "cli/syntax.h"
#include "cli/tree.h"

namespace morandel::cli {
namespace {

// Evaluating goes on after a fault, so a formula's parts tell which of them it was. Not where calls
// take what others have left: there a part alone is another thing.
std::optional<Remark> find_failing_part(std::string_view formula,
                                        const std::vector<Variable>& variables, int error) {
    constexpr int context_matters[] = {52, 59, 60};
    if (std::ranges::find(context_matters, error) != std::end(context_matters)) return std::nullopt;
    const Tree tree = tree_of(formula);
    for (const Node& node : tree.nodes) {
        if (node.type == Node::Type::leaf || node.type == Node::Type::missing) continue;
        CExpress part;
        declare(part, variables);
        const std::string text(formula.substr(node.begin, node.end - node.begin));
        if (part.SetExpression(text.c_str()) == 0 || part.CalcExpression() != 0) continue;
        if (part.GetErrorNumber() != error) continue;
        const bool is_division = tree.tokens[node.token].is("/");
        const Node& shown = is_division ? tree.nodes[node.children.back()] : node;
        return Remark{shown.begin, shown.end - shown.begin, {}};
    }
    return std::nullopt;
}

// What the evaluation cannot read as an operand, such as after a factorial.
std::optional<Remark> find_missing_operand(std::string_view formula) {
    const Tree tree = tree_of(formula);
    for (const Node& node : tree.nodes) {
        if (node.type != Node::Type::missing || node.token == 0) continue;
        const FormulaToken& before = tree.tokens[node.token - 1];
        return Remark{before.position, before.text.size(),
                      say("nothing stands after '{0}'", to_utf8(before.text))};
    }
    return std::nullopt;
}

}  // namespace

void declare(CExpress& express, const std::vector<Variable>& variables) {
    if (variables.size() > CExpress::max_parameters) {
        throw UsageError(say("at most {0} values", CExpress::max_parameters));
    }
    express.SetNumberOfPara(static_cast<int>(variables.size()));
    int index = 0;
    for (const Variable& variable : variables) {
        const auto* text = std::get_if<std::string>(&variable.value);
        MYPARA para{variable.name, text != nullptr ? 0.0 : std::get<double>(variable.value),
                    text != nullptr ? *text : ""};
        express.SetPara(&para, ++index, text != nullptr);
    }
}

void Evaluator::set_variables(std::vector<Variable> variables) {
    declare(m_express, variables);
    m_variables = std::move(variables);
}

Outcome Evaluator::load(std::string_view formula) {
    try {
        return load_converted(formula);
    } catch (const EncodingError& problem) {
        return failed(problem.message());
    }
}

Outcome Evaluator::load_converted(std::string_view formula) {
    if (formula.find('\0') != std::string_view::npos) {
        return failed(say("the formula holds a zero byte"));
    }
    m_formula = to_gbk(formula);
    if (m_formula.size() > CExpress::max_formula) {
        return failed(say("the formula is longer than 512 bytes of code page 936"));
    }
    if (m_express.SetExpression(m_formula.c_str()) == 0) return failure(m_express, false);
    Outcome loaded;
    loaded.succeeded = true;
    return loaded;
}

Outcome Evaluator::evaluate(std::string_view formula) {
    const Outcome loaded = load(formula);
    return loaded.succeeded ? evaluate_loaded() : loaded;
}

Outcome Evaluator::evaluate_loaded() {
    if (m_express.CalcExpression() == 0) return failure(m_express, true);
    Outcome outcome;
    outcome.succeeded = true;
    outcome.type = m_express.GetResultType();
    if (outcome.type != result_text) {
        outcome.number = m_express.GetResult();
        return outcome;
    }
    try {
        outcome.text = to_utf8(m_express.m_StrResult);
    } catch (const EncodingError& problem) {
        return failed(say("the result cannot be shown: {0}", problem.message()));
    }
    return outcome;
}

Outcome Evaluator::failure_of(CExpress& express) { return failure(express, true); }

Outcome Evaluator::failure(CExpress& express, bool loaded) {
    Outcome outcome;
    outcome.error = express.GetErrorNumber();
    outcome.library_message = to_utf8(express.m_ErrorMessage);
    const ErrorHelp* help = find_error_help(outcome.error);
    outcome.message = {help == nullptr ? outcome.library_message : std::string(help->english),
                       outcome.library_message};
    if (m_formula.find_first_not_of(' ') == std::string::npos) {
        outcome.message = say("the formula is empty");
    } else {
        explain(outcome, loaded);
    }
    return outcome;
}

// Says more than the library where more is known: what is wrong, and where.
void Evaluator::explain(Outcome& outcome, bool loaded) {
    std::optional<Remark> remark;
    if (!loaded) {
        remark = find_syntax_fault(m_formula);
    } else if (const auto free = free_names(); !free.empty()) {
        std::vector<std::string> names = m_known_names;
        for (const Variable& variable : m_variables) names.push_back(variable.name);
        const std::vector<FormulaToken> tokens = tokens_of(m_formula);
        const auto token = std::ranges::find(tokens, free.front(), &FormulaToken::text);
        const std::size_t position = token == tokens.end() ? 0 : token->position;
        remark = {position, free.front().size(), name_without_value(free.front(), names)};
        outcome.is_numbered = outcome.error == 0;
    } else if (remark = find_missing_operand(m_formula); !remark) {
        remark = find_failing_part(m_formula, m_variables, outcome.error);
    }
    if (!remark) return;
    if (!remark->message.empty()) outcome.message = remark->message;
    outcome.picture = picture(m_formula, remark->position, remark->length);
    outcome.position = static_cast<std::ptrdiff_t>(utf8_position(m_formula, remark->position));
}

std::vector<std::string> Evaluator::free_names() {
    std::vector<std::string> names;
    for (int i = 1; i <= m_express.GetVariableNum(); ++i) {
        names.push_back(m_express.GetVariable(i, nullptr));
    }
    return names;
}

std::vector<FreeVariable> Evaluator::free_variables() {
    std::vector<FreeVariable> variables;
    for (int i = 1; i <= m_express.GetVariableNum(); ++i) {
        int type = 0;
        const std::string name = m_express.GetVariable(i, &type);
        variables.push_back({to_utf8(name), type});
    }
    return variables;
}

}  // namespace morandel::cli
