// Reads and writes rows of comma-separated values, quoted where that is needed.

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

namespace morandel::cli {

using Row = std::vector<std::string>;

constexpr std::size_t longest_row = std::size_t{16} * 1024 * 1024;  // bytes

// Hands on each row until the end, or until on_row gives false; read_so_far is in bytes. Blank
// lines are no rows, except in a file of one column. Throws std::runtime_error for a row of more
// than longest_row, and for a last row whose quote is not closed.
void read_csv(std::istream& in,
              const std::function<bool(Row& row, std::uint64_t read_so_far)>& on_row);

// The row as a line with its end.
std::string csv_line(const Row& row);

}  // namespace morandel::cli
