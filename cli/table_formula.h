// A formula that is computed for the rows of a table, a piece at a time.

#pragma once

#include <cstddef>
#include <functional>
#include <morandel/formula.hpp>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cli/columns.h"
#include "cli/outcome.h"
#include "cli/table_block.h"

namespace morandel::cli {

// Where a name of a formula takes its value from.
struct Source {
    std::string name;  // code page 936
    std::size_t column;
    bool is_text;
};

class TableFormula {
  public:
    // Both UTF-8; the title is empty for a condition.
    TableFormula(std::string title, std::string formula);

    [[nodiscard]] const std::string& title() const { return m_title; }
    // For messages.
    [[nodiscard]] Message shown_title() const;
    // Of a name that is bound.
    [[nodiscard]] Kind kind_of_name(std::string_view name) const;
    [[nodiscard]] const std::vector<Source>& sources() const { return m_sources; }
    [[nodiscard]] const std::string& formula() const { return m_formula; }

    // The names that it needs, UTF-8; none where it is refused.
    [[nodiscard]] std::vector<std::string> names() const;

    // Whether a name is a text; no column where it has a value that is given, and by default what
    // the formula makes of it.
    using IsText = std::function<bool(std::string_view name, std::optional<std::size_t> column,
                                      bool by_default)>;
    // Finds the columns and given values, all texts, that the formula uses. Throws Problem.
    void bind(const Columns& columns, const std::vector<Variable>& given, EmptyFields empty_fields,
              bool is_gbk, const IsText& is_text);

    // Computes all rows that are chosen.
    void compute(TableBlock& block, ComputedColumn& computed);
    // Why a row failed.
    [[nodiscard]] Outcome explain(const TableBlock& block, Place place) const;

  private:
    void prepare(bool is_gbk);
    [[nodiscard]] std::vector<morandel_column> columns_of(TableBlock& block) const;
    void compute_numbers(std::span<const morandel_column> columns, ComputedColumn& computed);
    void compute_texts(std::span<const morandel_column> columns, ComputedColumn& computed);
    void leave_out(TableBlock& block, ComputedColumn& computed) const;
    [[nodiscard]] bool fails_to_read(const TableBlock& block, Place place) const;

    std::string m_title;
    std::string m_formula;
    bool m_is_gbk = false;
    std::vector<Source> m_sources;
    std::vector<Variable> m_constants;          // the given values that it uses
    std::vector<std::string> m_constant_texts;  // in the encoding of the file
    std::vector<std::string> m_titles;          // of the sources' columns, for messages
    std::optional<morandel::Formula> m_prepared;
    bool m_gives_texts = false;  // as it did last
    std::vector<unsigned char> m_status;
};

}  // namespace morandel::cli
