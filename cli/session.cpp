#include "cli/session.h"

#include <utility>

#include "cli/check_output.h"
#include "cli/encoding.h"
#include "cli/lines.h"
#include "cli/output.h"

namespace morandel::cli {
namespace {

constexpr std::string_view help =
    "FORMULA         evaluates it:  preci(2.675, 2)\n"
    "name = value    a number, a \"text\" or the value of a formula, for what follows\n"
    "                (to compare, write the name in parentheses: (a) = 3)\n"
    "name := formula computed anew whenever it is needed\n"
    ":check FORMULA  lists its faults\n"
    ":calc           computes all names and shows their values, as :vars does\n"
    ":help           this\n"
    ":quit           ends";

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
        const bool computed = equals > 0 && line[equals - 1] == ':';
        const std::string_view name = trim(line.substr(0, computed ? equals - 1 : equals));
        const std::string_view rest = trim(line.substr(equals + 1));
        if (find_word(name) != nullptr) return fail(std::string(name) + " has a meaning already");
        if (computed) return define(name, rest);
        if (is_plain_name(name)) return assign(name, rest);
    }
    return print_outcome(m_definitions.evaluate(line), m_json) == 0;
}

bool Session::run_command(std::string_view command) {
    constexpr std::string_view check_verb = "check ";
    if (command.starts_with(check_verb)) return check(trim(command.substr(check_verb.size())));
    if (command == "vars" || command == "calc") return list_variables();
    if (command == "quit" || command == "q") {
        m_ended = true;
    } else if (command == "help") {
        print_line(std::string(help));
    } else {
        return fail("no command ':" + std::string(command) + "'; :help lists them");
    }
    return true;
}

bool Session::assign(std::string_view name, std::string_view value) {
    Definition definition;
    definition.name = to_gbk(name);
    if (is_given_value(value)) {
        definition.value = read_value(value);
    } else {
        const Outcome outcome = m_definitions.evaluate(value);
        if (!outcome.succeeded) return print_outcome(outcome, m_json) == 0;
        definition.value = given_of(outcome);
    }
    m_definitions.set(std::move(definition));
    return true;
}

bool Session::define(std::string_view name, std::string_view formula) {
    if (!is_plain_name(name)) return fail("no name to define: " + std::string(name));
    const Outcome loaded = Evaluator().load(formula);
    if (!loaded.succeeded) return print_outcome(loaded, m_json) == 0;
    Definition definition;
    definition.name = to_gbk(name);
    definition.formula = formula;
    definition.is_computed = true;
    m_definitions.set(std::move(definition));
    return true;
}

bool Session::check(std::string_view formula) {
    return print_check(std::string(formula), {}, m_json) == 0;
}

bool Session::fail(const std::string& problem) const {
    return print_outcome(failed(problem), m_json) == 0;
}

bool Session::list_variables() {
    bool all_well = true;
    for (std::size_t place = 0; place < m_definitions.size(); ++place) {
        all_well = print_definition(to_utf8(m_definitions[place].name), m_definitions.value(place),
                                    m_json) &&
                   all_well;
    }
    return all_well;
}

}  // namespace morandel::cli
