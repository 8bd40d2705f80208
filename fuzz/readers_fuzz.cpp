// What the command reads: rows of a CSV file, which come back from their own text, and the lines of
// a prompt or a file of definitions.

#include <sstream>
#include <stdexcept>

#include "cli/csv.h"
#include "cli/lines.h"
#include "cli/session.h"
#include "fuzz/bytes.h"

namespace {

using namespace morandel::cli;

// The rows up to the one that is refused, if any.
std::vector<Row> rows_of(const std::string& text) {
    std::vector<Row> rows;
    std::istringstream in(text);
    try {
        read_csv(in, [&](Row& row, std::uint64_t) {
            rows.push_back(row);
            return true;
        });
    } catch (const std::runtime_error&) {
    }
    return rows;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const bool is_csv = bytes.below(2) == 0;
    const std::string text(data + (size > 0 ? 1 : 0), data + size);
    if (is_csv) {
        const std::vector<Row> rows = rows_of(text);
        std::string again;
        for (const Row& row : rows) again += csv_line(row);
        if (rows_of(again) != rows) __builtin_trap();
        return 0;
    }
    std::istringstream in(text);
    Session session(bytes.below(2) == 0);
    std::string line;
    for (int lines = 0; lines < 40 && !session.ended() && read_line(in, line); ++lines) {
        session.run(line);
    }
    return 0;
}
