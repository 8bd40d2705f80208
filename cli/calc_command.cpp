// morandel calc FILE [name=value ...]: "name = value" and "name := formula", a line each.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "cli/commands.h"
#include "cli/definitions.h"
#include "cli/encoding.h"
#include "cli/lines.h"
#include "cli/output.h"
#include "cli/system.h"

namespace morandel::cli {
namespace {

// Up to a "#" that begins a line or follows a blank, and does not stand in a text.
std::string_view without_comment(std::string_view line) {
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"') quoted = !quoted;
        const bool after_blank = i == 0 || line[i - 1] == ' ' || line[i - 1] == '\t';
        if (line[i] == '#' && !quoted && after_blank) return line.substr(0, i);
    }
    return line;
}

class Reader {
  public:
    Reader(Definitions& definitions, std::string source)
        : m_definitions(definitions), m_source(std::move(source)) {}

    // False where a line is faulty; faulty lines are reported, up to a hundred. Throws
    // std::runtime_error for input without an end.
    bool read(std::istream& in) {
        constexpr int most_problems = 100;
        constexpr std::size_t longest_input = std::size_t{64} * 1024 * 1024;
        std::string line;
        std::size_t size = 0;
        while (read_line(in, line)) {
            size += line.size() + 1;
            if (size > longest_input) throw std::runtime_error("more than 64 MiB of definitions");
            if (m_problems >= most_problems) {
                print_problem("so many lines are faulty that the rest is not read");
                return false;
            }
            ++m_line;
            try {
                read_definition(line);
            } catch (const EncodingError& problem) {
                complain(problem.what());
            }
        }
        if (in.bad()) complain("cannot be read");
        return m_problems == 0;
    }

  private:
    void read_definition(std::string_view line) {
        if (line.size() > longest_line) return complain("the line is too long");
        const std::string_view text = trim(without_comment(line));
        if (text.empty()) return;
        const std::size_t equals = text.find('=');
        if (equals == std::string_view::npos)
            return complain("expected name = value or name := formula");
        Definition definition;
        definition.line = m_line;
        definition.is_computed = equals > 0 && text[equals - 1] == ':';
        const std::string_view name =
            trim(text.substr(0, equals - (definition.is_computed ? 1 : 0)));
        const std::string_view value = trim(text.substr(equals + 1));
        if (!is_plain_name(name)) return complain("no name to define: '" + std::string(name) + "'");
        definition.name = to_gbk(name);
        if (m_definitions.has(definition.name)) {
            return complain(std::string(name) + " is defined already");
        }
        if (definition.is_computed) {
            const Outcome loaded = m_evaluator.load(value);
            if (!loaded.succeeded) return complain(failure_text(loaded));
            definition.formula = value;
        } else if (is_given_value(value)) {
            definition.value = read_value(value);
        } else {
            return complain("expected a number or a \"text\" after =; a formula comes after :=");
        }
        m_definitions.set(std::move(definition));
    }

    void complain(const std::string& problem) {
        ++m_problems;
        print_problem(m_source + ":" + std::to_string(m_line) + ": " + problem);
    }

    Definitions& m_definitions;
    std::string m_source;
    Evaluator m_evaluator;
    int m_line = 0;
    int m_problems = 0;
};

bool read_file(const std::string& file, Definitions& definitions) {
    if (file == "-") return Reader(definitions, "standard input").read(std::cin);
    const std::filesystem::path path = to_path(file);
    std::ifstream in(path, std::ios::binary);
    if (!in || std::filesystem::is_directory(path)) throw std::runtime_error("cannot read " + file);
    return Reader(definitions, file).read(in);
}

void override_values(const std::vector<Variable>& variables, Definitions& definitions) {
    for (const Variable& variable : variables) {
        if (!definitions.has(variable.name)) {
            throw UsageError("no name '" + to_utf8(variable.name) + "' to override");
        }
        Definition definition;
        definition.name = variable.name;
        definition.value = variable.value;
        definitions.set(std::move(definition));
    }
}

// One value alone.
int print_one(Definitions& definitions, const std::string& name, bool as_json) {
    const std::string wanted = to_gbk(name);
    for (std::size_t place = 0; place < definitions.size(); ++place) {
        if (definitions[place].name == wanted)
            return print_outcome(definitions.value(place), as_json);
    }
    throw UsageError("no name '" + name + "' to get");
}

}  // namespace

int calc_command(const Request& request) {
    Definitions definitions;
    const std::string& file = request.operands.front();
    if (!read_file(file, definitions)) return 1;
    override_values(read_variables(request.operands), definitions);
    if (!request.get.empty()) return print_one(definitions, request.get, request.json);

    // Nothing is printed unless all is well.
    int status = 0;
    for (std::size_t place = 0; place < definitions.size(); ++place) {
        const Outcome outcome = definitions.value(place);
        if (outcome.succeeded) continue;
        status = 1;
        print_problem((file == "-" ? "standard input" : file) + ":" +
                      std::to_string(definitions[place].line) + ": " + failure_text(outcome));
    }
    for (std::size_t place = 0; status == 0 && place < definitions.size(); ++place) {
        print_definition(to_utf8(definitions[place].name), definitions.value(place), request.json);
    }
    return status;
}

}  // namespace morandel::cli
