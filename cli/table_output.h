// Writes the rows of a table with their computed columns, as separated values or as JSON.

#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cli/columns.h"
#include "cli/number_format.h"
#include "cli/table_block.h"

namespace morandel::cli {

struct TableStyle {
    char delimiter = ',';
    bool is_gbk = false;
    bool json = false;
    bool has_header = true;
    NumberFormat numbers;
};

struct WrittenColumn {
    std::size_t value;  // of all columns, the one whose value is written
    std::size_t title;  // and the one whose title, another where the value replaces it
};

class TableOutput {
  public:
    explicit TableOutput(const TableStyle& style) : m_style(style) {}

    // Of all columns, those of the file first, the ones to write, in order; and which of them
    // are numbers in JSON.
    void choose(const Columns& columns, std::vector<WrittenColumn> written,
                const std::vector<bool>& numbers);
    // Where only further columns follow those of the file, rows are copied as they stand.
    void append_header(std::string& out, const Row& row, const Columns& columns,
                       std::span<const Field> fields) const;
    void append_row(std::string& out, const TableBlock& block, Place place) const;

  private:
    void append_json(std::string& out, const TableBlock& block, Place place) const;
    void append_json_value(std::string& out, std::size_t index, const TableBlock& block,
                           Place place) const;
    void append_computed(std::string& out, const ComputedColumn& computed, std::size_t index) const;

    TableStyle m_style;
    std::vector<WrittenColumn> m_written;
    std::vector<std::string> m_keys;  // of JSON, for those written
    std::vector<bool> m_numbers;
    std::size_t m_file_columns = 0;
    bool m_copies_rows = false;
};

}  // namespace morandel::cli
