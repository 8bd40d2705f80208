// morandel each FILE.csv --add 'column = formula' ...: the file with computed columns, row by row.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>

#include "cli/commands.h"
#include "cli/csv.h"
#include "cli/encoding.h"
#include "cli/lines.h"
#include "cli/output.h"
#include "cli/progress.h"
#include "cli/system.h"

namespace morandel::cli {
namespace {

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

// A column to be added.
struct Added {
    std::string name;                                         // UTF-8
    std::string formula;                                      // UTF-8
    std::vector<std::pair<std::string, std::size_t>> fields;  // names it uses, and their columns
    std::vector<Variable> constants;                          // given on the command line
};

class Table {
  public:
    Table(const Request& request, std::string source)
        : m_source(std::move(source)),
          m_is_gbk(request.encoding == "gbk"),
          m_json(request.json),
          m_on_error(request.on_error),
          m_given(read_variables(request.operands)) {
        for (const std::string& text : request.add) m_added.push_back(read_added(text));
    }

    // Reads everything and writes it with the added columns; the exit status.
    int run(std::istream& in, std::uint64_t size) {
        Progress progress(size);
        read_csv(in, [&](Row& row, std::uint64_t read_so_far) {
            progress.update(read_so_far, m_rows);
            if (m_header.empty()) {
                take_header(row);
                return true;
            }
            ++m_rows;
            return take_row(row, progress);
        });
        if (m_header.empty()) throw std::runtime_error(m_source + " has no header row");
        return m_stopped ? 1 : 0;
    }

  private:
    static Added read_added(const std::string& text) {
        const std::size_t equals = text.find('=');
        const std::string_view whole = text;
        if (equals == std::string::npos || trim(whole.substr(0, equals)).empty()) {
            throw UsageError("expected --add 'column = formula', got '" + text + "'");
        }
        Added added;
        added.name = trim(whole.substr(0, equals));
        added.formula = trim(whole.substr(equals + 1));
        return added;
    }

    void take_header(Row& row) {
        m_has_mark = !m_is_gbk && row.front().starts_with(byte_order_mark);
        if (m_has_mark) row.front().erase(0, byte_order_mark.size());
        for (const std::string& field : row) m_header.push_back(m_is_gbk ? to_utf8(field) : field);
        m_columns = row.size();
        for (Added& added : m_added) {
            bind(added);
            m_header.push_back(added.name);
            row.push_back(m_is_gbk ? to_gbk(added.name) : added.name);
        }
        if (m_json) return;
        if (m_has_mark) write(byte_order_mark);
        write(csv_line(row));
    }

    // Finds the columns that a formula uses, those added before it included.
    void bind(Added& added) {
        Evaluator evaluator;
        const Outcome loaded = evaluator.load(added.formula);
        if (!loaded.succeeded) {
            throw std::runtime_error(added.name + ": " + failure_text(loaded));
        }
        for (const FreeVariable& used : evaluator.free_variables()) {
            const std::string name = to_gbk(used.name);
            const auto given = std::ranges::find(m_given, name, &Variable::name);
            const auto column = std::ranges::find(m_header, used.name);
            if (given != m_given.end()) {
                added.constants.push_back(*given);
            } else if (column != m_header.end()) {
                added.fields.emplace_back(name, column - m_header.begin());
            } else {
                throw std::runtime_error(added.name + ": there is no column '" + used.name + "'");
            }
        }
        if (added.fields.size() + added.constants.size() > CExpress::max_parameters) {
            throw std::runtime_error(added.name + ": the formula uses more than 50 names");
        }
    }

    // False where reading is to end.
    bool take_row(Row& row, Progress& progress) {
        const bool too_long = row.size() > m_columns;
        if (!too_long) row.resize(m_columns);
        std::vector<Outcome> outcomes;
        for (const Added& added : m_added) {
            Outcome outcome =
                too_long ? failed("the row has more fields than the header") : evaluate(added, row);
            if (!outcome.succeeded && !tolerate(added, outcome, progress))
                return m_on_error != "stop";
            row.push_back(outcome.succeeded ? field_of(outcome) : "");
            outcomes.push_back(std::move(outcome));
        }
        if (m_json) {
            write_json(row, outcomes);
        } else {
            write(csv_line(row));
        }
        return true;
    }

    // A fresh evaluator for each, so that no row leaves anything for the next.
    Outcome evaluate(const Added& added, const Row& row) const {
        std::vector<Variable> variables = added.constants;
        try {
            for (const auto& [name, column] : added.fields) {
                double number = 0.0;
                if (read_number(row[column], number)) {
                    variables.push_back({name, number});
                } else {
                    variables.push_back({name, m_is_gbk ? row[column] : to_gbk(row[column])});
                }
            }
        } catch (const EncodingError& problem) {
            return failed(problem.what());
        }
        Evaluator evaluator;
        evaluator.set_variables(variables);
        return evaluator.evaluate(added.formula);
    }

    [[nodiscard]] std::string field_of(const Outcome& outcome) const {
        const std::string text = value_text(outcome);
        return m_is_gbk ? to_gbk(text) : text;
    }

    // Names the row; whether it goes on with an empty field.
    bool tolerate(const Added& added, const Outcome& outcome, Progress& progress) {
        progress.clear();
        print_problem(m_source + " row " + std::to_string(m_rows) + ", " + added.name + ": " +
                      failure_text(outcome));
        m_stopped = m_on_error == "stop";
        return m_on_error == "empty";
    }

    void write_json(const Row& row, const std::vector<Outcome>& outcomes) const {
        nlohmann::json object = nlohmann::json::object();
        for (std::size_t i = 0; i < m_columns && i < row.size(); ++i) {
            object[m_header[i]] = m_is_gbk ? to_utf8(row[i]) : row[i];
        }
        for (std::size_t i = 0; i < outcomes.size(); ++i) {
            object[m_added[i].name] = outcome_json(outcomes[i])["value"];
        }
        print_line(object);
    }

    static void write(std::string_view text) {
        if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) {
            throw std::runtime_error("standard output cannot be written");
        }
    }

    std::string m_source;
    bool m_is_gbk;
    bool m_json;
    bool m_has_mark = false;
    bool m_stopped = false;
    std::string m_on_error;
    std::vector<Variable> m_given;
    std::vector<Added> m_added;
    Row m_header;               // UTF-8, with the added columns
    std::size_t m_columns = 0;  // of the file itself
    std::uint64_t m_rows = 0;
};

}  // namespace

int each_command(const Request& request) {
    const std::string& file = request.operands.front();
    if (file == "-") return Table(request, "standard input").run(std::cin, 0);
    const std::filesystem::path path = to_path(file);
    std::ifstream in(path, std::ios::binary);
    if (!in || std::filesystem::is_directory(path)) throw std::runtime_error("cannot read " + file);
    std::error_code unknown;
    const std::uintmax_t size = std::filesystem::file_size(path, unknown);
    return Table(request, file).run(in, unknown ? 0 : size);
}

}  // namespace morandel::cli
