#include "cli/definition_file.h"

#include <cmath>
#include <istream>
#include <nlohmann/json.hpp>
#include <string_view>

#include "cli/encoding.h"
#include "cli/lines.h"
#include "cli/output.h"
#include "cli/values.h"

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
    Reader(Definitions& definitions, const Faults& faults, bool is_gbk, SameName same_name)
        : m_definitions(definitions), m_faults(faults), m_is_gbk(is_gbk), m_same_name(same_name) {}

    bool read(std::istream& in) {
        constexpr int most_problems = 100;
        constexpr std::size_t longest_input = std::size_t{64} * 1024 * 1024;
        std::string line;
        std::size_t size = 0;
        while (read_line(in, line)) {
            size += line.size() + 1;
            if (size > longest_input) throw Problem(say("more than 64 MiB of definitions"));
            if (m_problems >= most_problems) {
                print_problem(say("so many lines are faulty that the rest is not read"));
                return false;
            }
            if (m_line == 0 && begins_as_utf16(line)) {
                ++m_line;
                complain(say("it is UTF-16; save it as UTF-8"));
                return false;
            }
            if (++m_line == 1 && line.starts_with(byte_order_mark)) {
                line.erase(0, byte_order_mark.size());
            }
            try {
                read_definition(m_is_gbk ? to_utf8(line) : line);
            } catch (const EncodingError& problem) {
                complain(m_is_gbk || is_utf8(line)
                             ? problem.message()
                             : say("the line is not UTF-8; GBK files need --encoding gbk"));
            }
        }
        if (in.bad()) complain(say("cannot be read"));
        return m_problems == 0;
    }

  private:
    void read_definition(std::string_view line) {
        if (line.size() > longest_line) return complain(say("the line is too long"));
        const std::string_view text = trim(without_comment(line));
        if (text.empty()) return;
        const std::size_t equals = text.find('=');
        if (equals == std::string_view::npos)
            return complain(say("expected name = value or name := formula"));
        Definition definition;
        definition.line = m_line;
        definition.is_computed = equals > 0 && text[equals - 1] == ':';
        const std::string_view name =
            trim(text.substr(0, equals - (definition.is_computed ? 1 : 0)));
        const std::string_view value = trim(text.substr(equals + 1));
        if (!is_plain_name(name)) return complain(say("no name to define: '{0}'", name));
        definition.name = read_name(name);
        if (m_same_name == SameName::is_a_fault && m_definitions.has(definition.name)) {
            return complain(say("{0} is defined already", name));
        }
        if (definition.is_computed) {
            const Outcome loaded = m_evaluator.load(value);
            if (!loaded.succeeded) return complain(loaded);
            definition.formula = value;
        } else if (is_given_value(value)) {
            definition.value = read_value(value);
        } else {
            return complain(
                say("expected a number or a \"text\" after =; a formula comes after :="));
        }
        m_definitions.set(std::move(definition));
    }

    void complain(const Message& problem) { complain(failed(problem)); }
    void complain(const Outcome& outcome) {
        ++m_problems;
        m_faults.report(outcome, m_line);
    }

    Definitions& m_definitions;
    const Faults& m_faults;
    bool m_is_gbk;
    SameName m_same_name;
    Evaluator m_evaluator;
    int m_line = 0;
    int m_problems = 0;
};

}  // namespace

void Faults::report(const Outcome& outcome, int line, const std::string& name) const {
    if (!m_as_json) {
        print_problem(say("{0}:{1}: {2}", m_source, line, failure_message(outcome)),
                      outcome.picture);
        return;
    }
    nlohmann::json object = outcome_json(outcome);
    object["line"] = line;
    object["name"] = name.empty() ? nlohmann::json() : nlohmann::json(name);
    print_line(object);
}

bool read_definitions(std::istream& in, Definitions& definitions, const Faults& faults, bool is_gbk,
                      SameName same_name) {
    return Reader(definitions, faults, is_gbk, same_name).read(in);
}

std::string definition_line(const Definition& definition) {
    const std::string name = to_utf8(definition.name);
    if (definition.is_computed) return name + " := " + definition.formula;
    if (const auto* number = std::get_if<double>(&definition.value)) {
        // What is read as infinite.
        if (std::isinf(*number)) return name + (*number > 0.0 ? " = 1e999" : " = -1e999");
        return name + " = " + number_text(*number);
    }
    const auto& text = std::get<std::string>(definition.value);
    if (text.find_first_of("\"\r\n") != std::string::npos) return {};
    return name + " = \"" + to_utf8(text) + '"';
}

}  // namespace morandel::cli
