#include "cli/csv.h"

#include <stdexcept>

namespace morandel::cli {
namespace {

// Takes the text byte by byte, in pieces of any size. A quote begins a quoted field only at the
// field's start; a doubled quote in there stands for one, and what follows the closing quote
// belongs to the field as if it had not closed.
class Parser {
  public:
    explicit Parser(const std::function<bool(Row&, std::uint64_t)>& on_row) : m_on_row(on_row) {}

    // False when on_row wants no more.
    bool parse(std::string_view text, std::uint64_t read_so_far) {
        for (const char c : text) {  // NOLINT(readability-use-anyofallof): it throws
            if (!take(c, read_so_far)) return false;
            if (++m_row_size > longest_row) {
                throw std::runtime_error("a row is longer than 16 MiB; is a quote not closed?");
            }
        }
        return true;
    }

    void finish(std::uint64_t read_so_far) {
        if (m_state == State::quoted) {
            throw std::runtime_error("the last row ends within quotes; is the file cut off?");
        }
        if (m_state != State::row_start) end_row(read_so_far);
    }

  private:
    enum class State { row_start, field_start, plain, quoted, quote_in_quoted };

    bool take(char c, std::uint64_t read_so_far) {
        const bool rest_of_end = m_after_return && c == '\n';
        m_after_return = false;
        switch (m_state) {
            case State::quoted:
                if (c == '"') {
                    m_state = State::quote_in_quoted;
                } else {
                    m_field += c;
                }
                return true;
            case State::quote_in_quoted:
                if (c == '"') {
                    m_field += '"';
                    m_state = State::quoted;
                    return true;
                }
                break;
            case State::row_start:
                if (rest_of_end) return true;
                [[fallthrough]];
            case State::field_start:
                if (c == '"') {
                    m_state = State::quoted;
                    return true;
                }
                break;
            case State::plain:
                break;
        }
        return take_outside_quotes(c, read_so_far);
    }

    bool take_outside_quotes(char c, std::uint64_t read_so_far) {
        if (c == ',') {
            end_field();
            m_state = State::field_start;
            return true;
        }
        if (c == '\n' || c == '\r') {
            m_after_return = c == '\r';
            return end_row(read_so_far);
        }
        if (m_state == State::quote_in_quoted) {
            m_field += '"';
            m_state = State::quoted;
        } else {
            m_state = State::plain;
        }
        m_field += c;
        return true;
    }

    // The strings of a row are used again for the next one.
    void end_field() {
        if (m_fields == m_row.size()) m_row.emplace_back();
        m_row[m_fields++].swap(m_field);
        m_field.clear();
    }

    bool end_row(std::uint64_t read_so_far) {
        const bool is_blank = m_state == State::row_start;
        m_state = State::row_start;
        m_row_size = 0;
        if (is_blank && m_columns != 1) return true;
        end_field();
        m_row.resize(m_fields);
        if (m_columns == 0) m_columns = m_fields;
        m_fields = 0;
        return m_on_row(m_row, read_so_far);
    }

    const std::function<bool(Row&, std::uint64_t)>& m_on_row;
    State m_state = State::row_start;
    Row m_row;
    std::size_t m_fields = 0;  // of m_row, that are read
    std::string m_field;
    std::size_t m_columns = 0;  // of the first row
    std::size_t m_row_size = 0;
    bool m_after_return = false;  // a LF now belongs to the end of the row before
};

}  // namespace

void read_csv(std::istream& in, const std::function<bool(Row&, std::uint64_t)>& on_row) {
    Parser parser(on_row);
    std::vector<char> room(std::size_t{64} * 1024);
    std::uint64_t read_so_far = 0;
    while (true) {
        in.read(room.data(), static_cast<std::streamsize>(room.size()));
        const auto size = static_cast<std::size_t>(in.gcount());
        if (size == 0) break;
        read_so_far += size;
        if (!parser.parse({room.data(), size}, read_so_far)) return;
    }
    if (in.bad()) throw std::runtime_error("the file cannot be read to its end");
    parser.finish(read_so_far);
}

std::string csv_line(const Row& row) {
    // A blank line would be no row.
    if (row.size() == 1 && row[0].empty()) return "\"\"\n";
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
