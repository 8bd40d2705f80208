#include "cli/values.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "base/numbers.h"
#include "cli/encoding.h"
#include "cli/suggestion.h"

namespace morandel::cli {

bool read_number(std::string_view text, double& number) {
    const bool has_sign = text.starts_with('+') || text.starts_with('-');
    // from_chars would also read inf and nan, and no plus.
    if (text.substr(has_sign ? 1 : 0).find_first_of("0123456789.") != 0) return false;
    if (text.starts_with('+')) text.remove_prefix(1);
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    // Beyond what numbers can be it is infinite or 0, as in a formula.
    if (read.ec == std::errc::result_out_of_range) number = text_to_number(text);
    return read.ec != std::errc::invalid_argument && read.ptr == text.data() + text.size();
}

Given read_value(std::string_view value) {
    double number = 0.0;
    if (read_number(value, number)) return number;
    return read_text(value);
}

std::string read_text(std::string_view value) {
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

std::string read_name(std::string_view name) {
    std::string gbk = to_gbk(name);
    const std::string_view character = unnameable_in(gbk);
    if (character.empty()) return gbk;
    throw EncodingError(
        say("{0}: {1}", shortened(name), say("a name cannot have '{0}'", to_utf8(character))));
}

Variable read_variable(std::string_view definition) {
    const std::size_t equals = definition.find('=');
    if (equals == std::string_view::npos || equals == 0) {
        throw UsageError(say("expected name=value, got '{0}'", definition));
    }
    return {read_name(definition.substr(0, equals)), read_value(definition.substr(equals + 1))};
}

std::vector<Variable> read_texts(const std::vector<std::string>& operands, std::size_t first) {
    std::vector<Variable> variables = read_variables(operands, first);
    for (std::size_t i = 0; i < variables.size(); ++i) {
        const std::string& operand = operands[first + i];
        variables[i].value = read_text(std::string_view(operand).substr(operand.find('=') + 1));
    }
    return variables;
}

std::vector<Variable> read_variables(const std::vector<std::string>& operands, std::size_t first) {
    std::vector<Variable> variables;
    for (std::size_t i = first; i < operands.size(); ++i) {
        Variable variable = read_variable(operands[i]);
        if (std::ranges::find(variables, variable.name, &Variable::name) != variables.end()) {
            throw UsageError(say("{0} is given twice", to_utf8(variable.name)));
        }
        variables.push_back(std::move(variable));
    }
    return variables;
}

void refuse_unused(const std::vector<Variable>& variables, const std::vector<std::string>& used) {
    for (const Variable& variable : variables) {
        if (std::ranges::find(used, variable.name) != used.end()) continue;
        const std::string close = closest(variable.name, used);
        const std::string name = to_utf8(variable.name);
        if (close.empty()) throw UsageError(say("no formula uses {0}", name));
        throw UsageError(say("no formula uses {0}; did you mean {1}?", name, to_utf8(close)));
    }
}

}  // namespace morandel::cli
