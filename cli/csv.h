// Reads and writes rows of separated values, quoted where that is needed.

#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "cli/messages.h"

namespace morandel::cli {

struct Field {
    std::string_view text;  // without quotes
    std::string_view raw;   // as it stands in the file
};

struct Row {
    std::size_t first = 0;  // of its fields, in the block
    std::size_t count = 0;
    std::string_view raw;  // without its end
    std::string_view end;  // LF, CR LF, CR, or nothing at the end of a file
};

// A piece of a file with the rows that lie wholly in it. The fields lie in the bytes.
struct Block {
    std::string bytes;
    std::vector<Field> fields;
    std::vector<Row> rows;
    std::deque<std::string> unquoted;  // texts that doubled quotes make differ from the bytes

    void clear();
};

constexpr std::size_t most_fields = 100'000;                        // of a row
constexpr std::size_t longest_row = std::size_t{16} * 1024 * 1024;  // bytes

// A quote begins a quoted field only at the field's start; a doubled quote in there stands for one,
// and what follows the closing quote belongs to the field as if it had not closed. Blank lines are
// no rows, except in a file of one column.
class CsvParser {
  public:
    // Rows are counted from the number given, for messages; 0 is the header.
    // In GBK a delimiter may also be the second byte of a character, which it does not end.
    explicit CsvParser(char delimiter, std::uint64_t first_row = 0, bool is_gbk = false);

    // Finds the rows in the block's bytes and gives how many bytes they take; what is left belongs
    // to a row that goes on in what is read next, unless these bytes are the last. Throws Problem
    // for a row of more than longest_row or most_fields, and for a last row whose quote is not
    // closed.
    std::size_t parse(Block& block, bool is_last);

  private:
    [[nodiscard]] Message row_name() const;
    const char* parse_row(const char* at, Block& block);
    const char* parse_quoted(const char* at, Block& block, std::string_view& text);
    [[nodiscard]] const char* plain_end(const char* at) const;
    [[nodiscard]] bool ends_field(const char* at) const;

    char m_delimiter;
    bool m_skips_characters;  // of two bytes
    bool m_special[256] = {};
    std::uint64_t m_row;
    std::size_t m_columns = 0;  // of the first row
    const char* m_end = nullptr;
    bool m_is_last = false;
};

// A field as it is written to a file.
void append_field(std::string& line, std::string_view text, char delimiter);

}  // namespace morandel::cli
