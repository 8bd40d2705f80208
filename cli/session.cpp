#include "cli/session.h"

#include <utility>

#include "cli/encoding.h"
#include "cli/lines.h"
#include "cli/values.h"
#include "cli/warning_output.h"

namespace morandel::cli {
namespace {

constexpr std::string_view last_value = "ans";

}  // namespace

bool Session::run(std::string_view line) {
    try {
        return run_line(trim(line));
    } catch (const Problem& problem) {
        return fail(problem.message());
    }
}

bool Session::run_line(std::string_view line) {
    if (line.empty()) return true;
    if (line.size() > longest_line) return fail(say("the line is too long"));
    if (line.starts_with(':')) return run_command(line.substr(1));
    if (const std::size_t equals = line.find('='); equals != std::string_view::npos) {
        const bool computed = equals > 0 && line[equals - 1] == ':';
        const std::string_view name = trim(line.substr(0, computed ? equals - 1 : equals));
        const std::string_view rest = trim(line.substr(equals + 1));
        if (is_reserved(name)) return fail(say("{0} has a meaning already", name));
        if (computed) return define(name, rest);
        if (is_plain_name(name)) return assign(name, rest);
    }
    // Words that people try; a name of that kind stays a name.
    const bool is_word = line == "quit" || line == "exit" || line == "help";
    if (is_word && !m_definitions.has(std::string(line))) return run_command(line);
    return evaluate(line);
}

bool Session::evaluate(std::string_view formula) {
    const Outcome outcome = m_definitions.evaluate(formula);
    if (!warn(formula)) return false;
    if (outcome.succeeded) {
        Definition last;
        last.name = last_value;
        last.value = given_of(outcome);
        m_definitions.set(std::move(last));
    }
    return print_outcome(outcome, m_style) == 0;
}

bool Session::assign(std::string_view name, std::string_view value) {
    Definition definition;
    definition.name = read_name(name);
    if (is_given_value(value)) {
        definition.value = read_value(value);
    } else {
        const Outcome outcome = m_definitions.evaluate(value);
        if (!warn(value)) return false;
        if (!outcome.succeeded) return print_outcome(outcome, m_style) == 0;
        definition.value = given_of(outcome);
    }
    m_definitions.set(std::move(definition));
    return true;
}

bool Session::define(std::string_view name, std::string_view formula) {
    if (!is_plain_name(name)) return fail(say("no name to define: '{0}'", name));
    const Outcome loaded = Evaluator().load(formula);
    if (!loaded.succeeded) return print_outcome(loaded, m_style) == 0;
    if (!warn(formula)) return false;
    Definition definition;
    definition.name = read_name(name);
    definition.formula = formula;
    definition.is_computed = true;
    m_definitions.set(std::move(definition));
    return true;
}

// False where a warning is a failure. A formula that is refused has its own message.
bool Session::warn(std::string_view formula) {
    if (!Evaluator().load(formula).succeeded) return true;
    const std::vector<Variable> values = m_definitions.values_for(formula);
    return print_warnings(std::string(formula), kinds_among(values), m_style);
}

bool Session::fail(const Message& problem) const {
    return print_outcome(failed(problem), m_style) == 0;
}

}  // namespace morandel::cli
