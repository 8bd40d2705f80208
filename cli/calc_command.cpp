// morandel calc FILE [name=value ...]: "name = value" and "name := formula", a line each.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "cli/commands.h"
#include "cli/definition_file.h"
#include "cli/encoding.h"
#include "cli/file_problem.h"
#include "cli/input.h"
#include "cli/output.h"
#include "cli/system.h"
#include "cli/values.h"
#include "cli/warning_output.h"

namespace morandel::cli {
namespace {

Message name_of_source(const std::string& file) {
    return file == "-" ? say("standard input") : Message{file, file};
}

bool read_file(const std::string& file, bool is_gbk, const Faults& faults,
               Definitions& definitions) {
    if (file == "-") return read_definitions(std::cin, definitions, faults, is_gbk);
    const std::filesystem::path path = to_path(file);
    if (std::filesystem::is_directory(path)) throw Problem(cannot_read(file, EISDIR));
    std::ifstream in(path, std::ios::binary);
    if (!in) throw Problem(cannot_read(file));
    return read_definitions(in, definitions, faults, is_gbk);
}

void override_values(const std::vector<Variable>& variables, Definitions& definitions) {
    for (const Variable& variable : variables) {
        if (!definitions.has(variable.name)) {
            throw UsageError(say("no name '{0}' to override", to_utf8(variable.name)));
        }
        Definition definition;
        definition.name = variable.name;
        definition.value = variable.value;
        definitions.set(std::move(definition));
    }
}

// The places of the names that are asked for, or of all.
std::vector<std::size_t> wanted_places(const Definitions& definitions,
                                       const std::vector<std::string>& names) {
    std::vector<std::size_t> places;
    for (std::size_t place = 0; names.empty() && place < definitions.size(); ++place) {
        places.push_back(place);
    }
    for (const std::string& name : names) {
        const auto place = definitions.find(to_gbk(name));
        if (!place) throw UsageError(say("no name '{0}' to get", name));
        places.push_back(*place);
    }
    return places;
}

// Of all formulas, since each may be needed by another.
bool warn(Definitions& definitions, const Message& source, const Style& style) {
    bool all_well = true;
    for (std::size_t place = 0; place < definitions.size(); ++place) {
        const Definition& definition = definitions[place];
        if (!definition.is_computed) continue;
        const std::vector<Variable> values = definitions.values_for(definition.formula);
        all_well = print_warnings(definition.formula, kinds_among(values), style,
                                  say("{0}:{1}", source, definition.line)) &&
                   all_well;
    }
    return all_well;
}

}  // namespace

int calc_command(const Request& request) {
    const Style style(request);
    Definitions definitions;
    const auto [file, first_value] = input_of(request);
    const Faults faults(name_of_source(file), request.json);
    if (!read_file(file, request.encoding == "gbk", faults, definitions)) return 1;
    override_values(read_variables(request.operands, first_value), definitions);
    const std::vector<std::size_t> places = wanted_places(definitions, request.get);

    // Nothing is printed unless all is well, and what only hands a failure on is not told again.
    std::set<int> told;
    for (const std::size_t place : places) {
        const Outcome outcome = definitions.value(place);
        if (outcome.succeeded || !told.insert(outcome.line).second) continue;
        faults.report(outcome, outcome.line, to_utf8(definitions[place].name));
    }
    if (!told.empty() || !warn(definitions, name_of_source(file), style)) return 1;
    for (const std::size_t place : places) {
        const Outcome outcome = definitions.value(place);
        if (request.get.empty() || (request.json && places.size() > 1)) {
            print_definition(to_utf8(definitions[place].name), outcome, style);
        } else {
            print_outcome(outcome, style);
        }
    }
    return 0;
}

}  // namespace morandel::cli
