// Columns of values, and what is computed of them, row by row.

#pragma once

#include <bitset>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <morandel/c.h>

#include "formula/prepared.h"

namespace morandel::formula {

// The values of all names for all rows, as callers lay them out.
class Columns {
  public:
    // Throws Refused where a column is not as it must be.
    Columns(std::span<const morandel_column> columns, std::size_t rows);

    [[nodiscard]] std::size_t count() const { return m_columns.size(); }
    [[nodiscard]] std::size_t rows() const { return m_rows; }
    [[nodiscard]] Kinds texts() const { return m_texts; }
    // Whether all rows have the same value.
    [[nodiscard]] bool is_single(std::size_t column) const;

    [[nodiscard]] double number(std::size_t column, std::size_t row) const;
    // All of them; none where one is no column of numbers as wide as doubles are.
    [[nodiscard]] std::optional<std::vector<Blocks::Column>> numbers() const;
    [[nodiscard]] std::string_view text(std::size_t column, std::size_t row) const;
    // Whether all texts of a column, and not of a single value, are the same bytes inside.
    [[nodiscard]] bool is_ascii(std::size_t column) const;
    // Whether what is written to so many numbers changes a value.
    [[nodiscard]] bool overlap(const double* numbers, std::size_t count) const;

  private:
    [[nodiscard]] std::size_t offset(const morandel_column& column, std::size_t index) const;
    void check(const morandel_column& column) const;
    void check_offsets(const morandel_column& column) const;

    std::span<const morandel_column> m_columns;
    std::size_t m_rows;
    Kinds m_texts;
};

// Computes rows in any order.
class RowComputation {
  public:
    // Throws Refused where the columns are not those of the formula's names. Where all rows are
    // wanted, columns are looked at as a whole.
    RowComputation(const Prepared& prepared, const Columns& columns, bool wants_all_rows = false);

    // Gives one of MORANDEL_ROW_...
    unsigned char run(std::size_t row);
    // What that gave, where it is MORANDEL_ROW_OK.
    [[nodiscard]] const Value& value() const { return m_computation->value(); }
    // Why a row failed, where it is not.
    [[nodiscard]] Report report();

  private:
    bool set(std::size_t column, std::size_t row);

    const Prepared& m_prepared;
    const Columns& m_columns;
    std::optional<Recording> m_other;
    std::optional<Computation> m_computation;
    std::vector<std::string> m_rooms;  // for texts as the formula sees them
    std::vector<std::size_t> m_changing;
    std::bitset<most_names> m_is_ascii;
    std::optional<Report> m_problem;  // of a value that does not convert
};

// A number for each row.
void compute_columns(const Prepared& prepared, const Columns& columns, double* results,
                     unsigned char* status);

// Texts one after the other, and where each begins and the last one ends.
struct Texts {
    std::string bytes;
    std::vector<std::size_t> offsets;
};

Texts compute_text_columns(const Prepared& prepared, const Columns& columns, unsigned char* status);

// Why a row fails; nothing where it does not.
std::optional<Report> report_of_row(const Prepared& prepared, const Columns& columns,
                                    std::size_t row, bool wants_text);

}  // namespace morandel::formula
