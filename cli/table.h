// The work of each: a table with computed columns, a piece at a time. One thread reads, one
// computes, one makes the text and writes it.

#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cli/commands.h"
#include "cli/progress.h"
#include "cli/table_formula.h"
#include "cli/table_output.h"
#include "cli/table_reader.h"
#include "cli/table_writer.h"

namespace morandel::cli {

class Table {
  public:
    // Operands from first_value on are name=value. Throws UsageError.
    Table(const Request& request, Message source, std::size_t first_value, char delimiter);

    // Reads everything and writes it; the exit status. The size is that of the file, 0 where it is
    // not known. The file is closed.
    int run(std::FILE* file, std::uint64_t size);

  private:
    enum class OnError { stop, skip, leave_empty };

    struct Condition {
        TableFormula formula;
        bool comes_last = false;  // since it needs a computed column
        ComputedColumn results;

        [[nodiscard]] bool holds(std::size_t index) const;
    };

    void take_header(const Row& row, std::span<const Field> fields, bool has_mark);
    void warn_of_encoding(const Row& row) const;
    [[nodiscard]] std::string title_of_gbk(std::string_view title) const;
    void bind(TableFormula& formula, const Columns& columns);
    void bind_all();
    void bind(Condition& condition);
    void check_kinds() const;
    [[nodiscard]] bool is_given(std::string_view name) const;
    void warn() const;
    void choose_columns();
    [[nodiscard]] std::vector<WrittenColumn> selected_columns() const;
    [[nodiscard]] std::size_t require_column(const std::string& name) const;

    // False where reading is to end.
    bool take_rows(std::shared_ptr<TableBlock> block, bool has_header);
    void choose_rows(std::size_t first);
    void compute_added(std::size_t index);
    enum class Verdict { keep, leave_out, stop };
    Verdict judge_conditions(Place place, bool come_last);
    Verdict judge_row(Place place);
    Verdict tolerate(const TableFormula* formula, Place place);
    [[nodiscard]] Outcome explain(const TableFormula* formula, Place place) const;
    void write_rows();
    void report_suppressed();

    const Request& m_request;
    Message m_source;
    TableStyle m_style;
    OnError m_on_error;
    EmptyFields m_empty_fields;
    std::vector<Variable> m_given;
    std::vector<TableFormula> m_added;
    std::vector<Condition> m_conditions;

    Columns m_file_columns;
    Columns m_columns;            // the file's and those that are computed so far
    std::vector<bool> m_texts;    // of the file's columns, those that some formula takes for a text
    std::vector<bool> m_numbers;  // or for a number
    TableOutput m_output;
    TableWriter m_writer;
    Progress m_progress;
    std::shared_ptr<TableBlock> m_block;
    std::vector<Place> m_kept;  // of its rows, those to be written
    std::uint64_t m_rows = 0;
    std::uint64_t m_rows_before = 0;  // what a place in the piece is counted from
    std::uint64_t m_reports = 0;
};

}  // namespace morandel::cli
