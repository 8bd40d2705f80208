#include "cli/session.h"

#include <algorithm>

#include "cli/encoding.h"
#include "cli/lines.h"
#include "cli/output.h"
#include "engine/characters.h"

namespace morandel::cli {
namespace {

constexpr std::string_view help =
    "FORMULA         evaluates it:  preci(2.675, 2)\n"
    "name = value    a number, a \"text\" or a formula, for the formulas that follow\n"
    "                (to compare, write the name in parentheses: (a) = 3)\n"
    ":vars           the names and their values\n"
    ":help           this\n"
    ":quit           ends";

std::string_view trim(std::string_view text) {
    constexpr std::string_view white_space = " \t\r\n\v\f";
    const std::size_t first = text.find_first_not_of(white_space);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(white_space) - first + 1);
}

// A name that a value can be given to at the prompt; formulas know more of them.
bool is_plain_name(std::string_view name) {
    const auto is_name_byte = [](char c) {
        return static_cast<unsigned char>(c) >= 0x80 || c == '_' || is_any(c, digit) ||
               (to_upper(c) >= 'A' && to_upper(c) <= 'Z');
    };
    return !name.empty() && !is_any(name.front(), digit) && std::ranges::all_of(name, is_name_byte);
}

}  // namespace

bool Session::run(std::string_view line) {
    try {
        return run_line(trim(line));
    } catch (const EncodingError& problem) {
        return fail(problem.what());
    } catch (const UsageError& problem) {
        return fail(problem.what());
    }
}

bool Session::run_line(std::string_view line) {
    if (line.empty()) return true;
    if (line.size() > longest_line) return fail("the line is too long");
    if (line.starts_with(':')) return run_command(line.substr(1));
    if (const std::size_t equals = line.find('='); equals != std::string_view::npos) {
        const std::string_view name = trim(line.substr(0, equals));
        if (is_plain_name(name)) return assign(name, trim(line.substr(equals + 1)));
    }
    m_evaluator.set_variables(m_variables);
    return print_outcome(m_evaluator.evaluate(line), m_json) == 0;
}

bool Session::run_command(std::string_view command) {
    if (command == "quit" || command == "q") {
        m_ended = true;
    } else if (command == "vars") {
        list_variables();
    } else if (command == "help") {
        print_line(std::string(help));
    } else {
        return fail("no command ':" + std::string(command) + "'; :help lists them");
    }
    return true;
}

bool Session::assign(std::string_view name, std::string_view value) {
    if (find_function(name) != nullptr) return fail(std::string(name) + " is a function");
    Variable variable{to_gbk(name), 0.0};
    double number = 0.0;
    const bool quoted = value.size() >= 2 && value.find('"', 1) == value.size() - 1;
    if (read_number(value, number) || (value.starts_with('"') && quoted)) {
        variable.value = read_value(value);
    } else {
        m_evaluator.set_variables(m_variables);
        const Outcome outcome = m_evaluator.evaluate(value);
        if (!outcome.succeeded) return print_outcome(outcome, m_json) == 0;
        if (outcome.type == type_text) {
            variable.value = to_gbk(outcome.text);
        } else {
            variable.value = outcome.number;
        }
    }
    const auto known = std::ranges::find(m_variables, variable.name, &Variable::name);
    if (known != m_variables.end()) {
        known->value = variable.value;
        return true;
    }
    if (m_variables.size() == CExpress::max_parameters) return fail("at most 50 names");
    m_variables.push_back(variable);
    return true;
}

bool Session::fail(const std::string& problem) const {
    return print_outcome(failed(problem), m_json) == 0;
}

void Session::list_variables() const {
    for (const Variable& variable : m_variables) {
        std::string line = to_utf8(variable.name);
        line += " = ";
        if (const auto* text = std::get_if<std::string>(&variable.value)) {
            line.append("\"").append(to_utf8(*text)).append("\"");
        } else {
            line += number_text(std::get<double>(variable.value));
        }
        print_line(line);
    }
}

}  // namespace morandel::cli
