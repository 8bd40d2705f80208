#include "cli/evaluate.h"

#include <charconv>
#include <system_error>
#include <utility>

#include "cli/encoding.h"
#include "cli/output.h"

namespace morandel::cli {

bool read_number(std::string_view text, double& number) {
    if (text.starts_with('+')) text.remove_prefix(1);
    const std::size_t first = text.find_first_not_of('-');
    // from_chars would also read inf and nan.
    if (first > 1 || text.find_first_of("0123456789.", first) != first) return false;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    return read.ec == std::errc() && read.ptr == text.data() + text.size();
}

Outcome failed(std::string message) {
    Outcome outcome;
    outcome.message = std::move(message);
    return outcome;
}

Given given_of(const Outcome& outcome) {
    if (outcome.type == type_text) return to_gbk(outcome.text);
    return outcome.number;
}

Given read_value(std::string_view value) {
    double number = 0.0;
    if (read_number(value, number)) return number;
    if (value.size() >= 2 && value.starts_with('"') && value.ends_with('"')) {
        value = value.substr(1, value.size() - 2);
    }
    return to_gbk(value);
}

bool is_given_value(std::string_view value) {
    double number = 0.0;
    const bool quoted =
        value.size() >= 2 && value.starts_with('"') && value.find('"', 1) == value.size() - 1;
    return quoted || read_number(value, number);
}

Variable read_variable(std::string_view definition) {
    const std::size_t equals = definition.find('=');
    if (equals == std::string_view::npos || equals == 0) {
        throw UsageError("expected name=value, got '" + std::string(definition) + "'");
    }
    return {to_gbk(definition.substr(0, equals)), read_value(definition.substr(equals + 1))};
}

std::vector<Variable> read_variables(const std::vector<std::string>& operands) {
    std::vector<Variable> variables;
    for (std::size_t i = 1; i < operands.size(); ++i)
        variables.push_back(read_variable(operands[i]));
    return variables;
}

void declare(CExpress& express, const std::vector<Variable>& variables) {
    if (variables.size() > CExpress::max_parameters) {
        throw UsageError("at most " + std::to_string(CExpress::max_parameters) + " values");
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

Outcome Evaluator::load(std::string_view formula) {
    try {
        return load_converted(formula);
    } catch (const EncodingError& problem) {
        return failed(problem.what());
    }
}

Outcome Evaluator::load_converted(std::string_view formula) {
    if (formula.find('\0') != std::string_view::npos) {
        return failed("the formula holds a zero byte");
    }
    const std::string text = to_gbk(formula);
    if (text.size() > CExpress::max_formula) {
        return failed("the formula is longer than 512 bytes of code page 936");
    }
    if (m_express.SetExpression(text.c_str()) == 0) return failure(text);
    Outcome loaded;
    loaded.succeeded = true;
    return loaded;
}

Outcome Evaluator::evaluate(std::string_view formula) {
    Outcome outcome = load(formula);
    if (!outcome.succeeded) return outcome;
    if (m_express.CalcExpression() == 0) return failure(formula);
    outcome.type = m_express.GetResultType();
    if (outcome.type != type_text) {
        outcome.number = m_express.GetResult();
        return outcome;
    }
    try {
        outcome.text = to_utf8(m_express.m_StrResult);
    } catch (const EncodingError& problem) {
        return failed(std::string("the result cannot be shown: ") + problem.what());
    }
    return outcome;
}

// The library refuses three kinds of formula without a message.
Outcome Evaluator::failure(std::string_view formula) {
    Outcome outcome = failed(to_utf8(m_express.m_ErrorMessage));
    outcome.error = m_express.GetErrorNumber();
    if (!outcome.message.empty()) return outcome;
    const std::size_t first = formula.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        outcome.message = "the formula is empty";
    } else if (formula.find('"') != std::string_view::npos) {
        outcome.message = "a string has no closing quote";
    } else {
        outcome.message = "no formula can begin like this";
    }
    return outcome;
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
