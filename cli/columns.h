// The columns of a table by their titles, and the names by which formulas reach them.

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morandel::cli {

// The name for a title: without blanks at its ends, with _ for every character that no name has;
// _ before a digit at the start, or before what is a function or a word. UTF-8.
std::string name_of_title(std::string_view title);

struct Column {
    std::string title;  // UTF-8
    std::string name;   // by which it is reached where no title is that name
    bool is_computed = false;
};

class Columns {
  public:
    void add(std::string title, bool is_computed = false);
    // The column of that title, else of that name. A computed one hides others, the last one first.
    // Throws Problem where two of the file's own are so called.
    [[nodiscard]] std::optional<std::size_t> find(std::string_view wanted) const;
    [[nodiscard]] std::size_t size() const { return m_columns.size(); }
    [[nodiscard]] const Column& operator[](std::size_t index) const { return m_columns[index]; }
    // For suggestions.
    [[nodiscard]] std::vector<std::string> names() const;

  private:
    std::vector<Column> m_columns;
};

}  // namespace morandel::cli
