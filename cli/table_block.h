// A piece of a table: its rows, what formulas see of them column by column, and what they gave.

#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "cli/csv.h"

namespace morandel::cli {

enum class EmptyFields { are_errors, are_zero, stay_empty };

// What reading a value gave; no_value where the formula that it comes from has none.
enum class Read : unsigned char { value, empty, no_number, no_value };

struct NumberColumn {
    std::vector<double> values;
    std::vector<Read> reads;
};

// One text after the other, each up to the next one's offset.
struct Texts {
    std::string bytes;
    std::vector<std::size_t> offsets;

    void clear();
    void end_text() { offsets.push_back(bytes.size()); }
    [[nodiscard]] std::string_view operator[](std::size_t index) const {
        return std::string_view(bytes).substr(offsets[index], offsets[index + 1] - offsets[index]);
    }
};

struct TextColumn {
    Texts texts;
    std::vector<Read> reads;
};

// What a formula gave.
struct ComputedColumn {
    enum class State : unsigned char { number, text, empty, failed };

    std::vector<State> states;
    std::vector<double> numbers;
    Texts texts;  // of all rows, where one has a text
};

// A row by its place in the piece, and among those that are chosen.
struct Place {
    std::size_t row;
    std::size_t chosen;
};

// The columns of the file come first, then those that are computed. All texts are in the encoding
// of the file.
class TableBlock {
  public:
    // What is read from the file.
    Block read;

    // Before the first use of what follows, and again for every piece.
    void begin(std::size_t file_columns, std::size_t computed, bool is_gbk,
               EmptyFields empty_fields);
    // The rows that are to be computed.
    void choose(std::vector<std::size_t> rows);
    [[nodiscard]] std::size_t chosen() const { return m_rows.size(); }
    [[nodiscard]] Place chosen_place(std::size_t index) const { return {m_rows[index], index}; }

    [[nodiscard]] std::size_t file_columns() const { return m_file_columns; }
    [[nodiscard]] bool is_too_long(std::size_t row) const {
        return read.rows[row].count > m_file_columns;
    }
    [[nodiscard]] bool empty_fields_stay_empty() const {
        return m_empty_fields == EmptyFields::stay_empty;
    }

    // Of all rows that are chosen.
    const NumberColumn& numbers(std::size_t column);
    const TextColumn& texts(std::size_t column);
    [[nodiscard]] ComputedColumn& computed(std::size_t index) { return m_computed[index]; }
    [[nodiscard]] const ComputedColumn& computed(std::size_t index) const {
        return m_computed[index];
    }

    // Of one row. Fields that are missing at its end are empty.
    [[nodiscard]] std::string_view field(std::size_t column, std::size_t row) const;
    [[nodiscard]] Read number(std::size_t column, Place place, double& number) const;
    [[nodiscard]] Read text(std::size_t column, Place place, std::string& text) const;
    // As it stands in the file, UTF-8; throws EncodingError.
    [[nodiscard]] std::string shown(std::size_t column, Place place) const;

  private:
    [[nodiscard]] Read read_field(std::string_view text, double& number) const;
    void forget();

    std::size_t m_file_columns = 0;
    bool m_is_gbk = false;
    EmptyFields m_empty_fields = EmptyFields::are_errors;
    std::vector<std::size_t> m_rows;
    std::vector<ComputedColumn> m_computed;

    // By column, as far as they are read.
    template <class Kind>
    struct Known {
        bool is_known = false;
        Kind column;
    };
    std::map<std::size_t, Known<NumberColumn>> m_numbers;
    std::map<std::size_t, Known<TextColumn>> m_texts;
};

}  // namespace morandel::cli
