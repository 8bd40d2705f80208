#include "cli/csv.h"

#include <csv.h>

#include <array>
#include <exception>
#include <stdexcept>

namespace morandel::cli {
namespace {

// What libcsv's callbacks work on. They are C, so an exception waits here until parsing is over.
struct Reading {
    explicit Reading(const std::function<bool(Row&, std::uint64_t)>& callback) : on_row(callback) {}

    const std::function<bool(Row&, std::uint64_t)>& on_row;
    Row row;
    std::size_t columns = 0;  // of the first row
    std::uint64_t read_so_far = 0;
    std::size_t row_size = 0;
    bool after_return = false;  // the row before ended with CR, so a LF now belongs to it
    bool ended = false;
    std::exception_ptr problem;
};

void take_field(void* field, std::size_t size, void* data) {
    auto& reading = *static_cast<Reading*>(data);
    reading.after_return = false;
    if (reading.ended) return;
    try {
        reading.row.emplace_back(static_cast<const char*>(field), size);
    } catch (...) {
        reading.problem = std::current_exception();
        reading.ended = true;
    }
}

void take_row(int end, void* data) {
    auto& reading = *static_cast<Reading*>(data);
    reading.row_size = 0;
    const bool rest_of_end = reading.after_return && end == '\n' && reading.row.empty();
    reading.after_return = end == '\r';
    if (reading.ended || rest_of_end) return;
    try {
        if (reading.row.empty()) {
            if (reading.columns != 1 || end < 0) return;
            reading.row.emplace_back();
        }
        if (reading.columns == 0) reading.columns = reading.row.size();
        if (!reading.on_row(reading.row, reading.read_so_far)) reading.ended = true;
        reading.row.clear();
    } catch (...) {
        reading.problem = std::current_exception();
        reading.ended = true;
    }
}

class Parser {
  public:
    Parser() {
        if (csv_init(&m_parser, CSV_REPALL_NL) != 0)
            throw std::runtime_error("libcsv does not start");
        // A field grows by so much at a time.
        csv_set_blk_size(&m_parser, std::size_t{1} << 20);
        // Blanks around a field belong to it.
        csv_set_space_func(&m_parser, [](unsigned char) { return 0; });
    }
    ~Parser() { csv_free(&m_parser); }
    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;

    void parse(const char* text, std::size_t size, Reading& reading) {
        if (csv_parse(&m_parser, text, size, take_field, take_row, &reading) != size) fail();
    }
    void finish(Reading& reading) {
        if (csv_fini(&m_parser, take_field, take_row, &reading) != 0) fail();
    }

  private:
    [[noreturn]] void fail() { throw std::runtime_error(csv_strerror(csv_error(&m_parser))); }

    csv_parser m_parser{};
};

}  // namespace

void read_csv(std::istream& in, const std::function<bool(Row&, std::uint64_t)>& on_row) {
    Parser parser;
    Reading reading(on_row);
    std::vector<char> room(std::size_t{64} * 1024);
    while (!reading.ended) {
        in.read(room.data(), static_cast<std::streamsize>(room.size()));
        const auto size = static_cast<std::size_t>(in.gcount());
        if (size == 0) break;
        reading.read_so_far += size;
        reading.row_size += size;
        parser.parse(room.data(), size, reading);
        if (reading.row_size > longest_row)
            throw std::runtime_error("a row is longer than 16 MiB; is a quote not closed?");
    }
    if (in.bad()) throw std::runtime_error("the file cannot be read to its end");
    if (!reading.ended) parser.finish(reading);
    if (reading.problem) std::rethrow_exception(reading.problem);
}

std::string csv_line(const Row& row) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const std::string& field = row[i];
        if (i > 0) line += ',';
        if (field.find_first_of(",\"\r\n") == std::string::npos) {
            line += field;
            continue;
        }
        line += '"';
        for (const char c : field) line.append(c == '"' ? 2 : 1, c);
        line += '"';
    }
    line += '\n';
    return line;
}

}  // namespace morandel::cli
