// What the command reads: rows of a CSV file, which come back from their own text, and the lines of
// a prompt or a file of definitions.

#include <sstream>
#include <string>
#include <vector>

#include "cli/csv.h"
#include "cli/lines.h"
#include "cli/session.h"
#include "fuzz/bytes.h"

namespace {

using namespace morandel::cli;

using Texts = std::vector<std::vector<std::string>>;

// The rows up to the one that is refused, if any; read in two pieces.
Texts rows_of(const std::string& text, std::size_t cut) {
    Texts rows;
    CsvParser parser(',');
    std::string rest = text.substr(0, cut);
    try {
        for (const bool is_last : {false, true}) {
            Block block;
            block.bytes = rest + (is_last ? text.substr(cut) : "");
            const std::size_t whole = parser.parse(block, is_last);
            for (const Row& row : block.rows) {
                auto& fields = rows.emplace_back();
                for (std::size_t i = 0; i < row.count; ++i) {
                    fields.emplace_back(block.fields[row.first + i].text);
                }
            }
            rest = block.bytes.substr(whole);
        }
    } catch (const Problem&) {
    }
    return rows;
}

std::string text_of(const Texts& rows) {
    std::string text;
    for (const auto& row : rows) {
        std::string line;
        for (const std::string& field : row) {
            append_field(line, field, ',');
            line += ',';
        }
        line.pop_back();
        text += (line.empty() ? "\"\"" : line) + '\n';
    }
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const bool is_csv = bytes.below(2) == 0;
    const std::string text(data + (size > 0 ? 1 : 0), data + size);
    if (is_csv) {
        const auto cut = static_cast<std::size_t>(bytes.below(256)) % (text.size() + 1);
        const Texts rows = rows_of(text, cut);
        const std::string again = text_of(rows);
        if (rows_of(again, again.size() / 2) != rows) __builtin_trap();
        return 0;
    }
    std::istringstream in(text);
    Style style;
    style.json = bytes.below(2) == 0;
    Session session(style);
    std::string line;
    for (int lines = 0; lines < 40 && !session.ended() && read_line(in, line); ++lines) {
        // What an input holds must not write files.
        if (line.find("save") == std::string::npos && line.find("load") == std::string::npos) {
            session.run(line);
        }
    }
    return 0;
}
