#include "cli/csv.h"

#include <algorithm>
#include <cstring>

#include "cli/messages.h"

namespace morandel::cli {
namespace {

constexpr char least_second_byte = 0x40;  // of a character of GBK

}  // namespace

void Block::clear() {
    bytes.clear();
    fields.clear();
    rows.clear();
    unquoted.clear();
}

CsvParser::CsvParser(char delimiter, std::uint64_t first_row, bool is_gbk)
    : m_delimiter(delimiter),
      m_skips_characters(is_gbk && delimiter >= least_second_byte),
      m_row(first_row) {
    // A zero byte stands behind the last one, so that no other test for the end is needed.
    for (const char c : {delimiter, '\n', '\r', '\0'}) {
        m_special[static_cast<unsigned char>(c)] = true;
    }
    if (m_skips_characters) std::fill(m_special + 0x81, m_special + 0xFF, true);
}

std::size_t CsvParser::parse(Block& block, bool is_last) {
    const char* const begin = block.bytes.data();
    m_end = begin + block.bytes.size();
    m_is_last = is_last;
    const char* at = begin;
    while (at != m_end) {
        const bool is_blank = *at == '\n' || *at == '\r';
        const char* next = parse_row(at, block);
        if (next == nullptr) {
            if (static_cast<std::size_t>(m_end - at) > longest_row) {
                throw Problem(say("{0} is longer than 16 MiB; is a quote not closed?", row_name()));
            }
            if (is_last) throw Problem(say("{0}: a quote is not closed", row_name()));
            break;
        }
        at = next;
        if (is_blank && m_columns != 1) {
            block.fields.resize(block.rows.back().first);
            block.rows.pop_back();
            continue;
        }
        if (m_columns == 0) m_columns = block.rows.back().count;
        ++m_row;
    }
    return static_cast<std::size_t>(at - begin);
}

Message CsvParser::row_name() const {
    return m_row == 0 ? say("the header row") : say("row {0}", m_row);
}

const char* CsvParser::plain_end(const char* at) const {
    while (true) {
        while (!m_special[static_cast<unsigned char>(*at)]) ++at;
        if (m_skips_characters && static_cast<unsigned char>(*at) > 0x80) {
            at += static_cast<unsigned char>(at[1]) >= least_second_byte ? 2 : 1;
            continue;
        }
        if (*at != '\0' || at == m_end) return at;
        ++at;  // a zero byte of the file
    }
}

bool CsvParser::ends_field(const char* at) const {
    return at == m_end || *at == m_delimiter || *at == '\n' || *at == '\r';
}

// The row's end, or null where the row may go on behind the bytes.
const char* CsvParser::parse_row(const char* at, Block& block) {
    const char* const begin = at;
    const std::size_t first = block.fields.size();
    while (true) {
        const char* const field = at;
        std::string_view text;
        if (at != m_end && *at == '"') {
            at = parse_quoted(at + 1, block, text);
        } else {
            at = plain_end(at);
            text = {field, static_cast<std::size_t>(at - field)};
        }
        if (at == nullptr || (at == m_end && !m_is_last)) break;
        if (block.fields.size() - first == most_fields) {
            throw Problem(
                say("{0} has more than 100000 fields; is the delimiter right?", row_name()));
        }
        block.fields.push_back({text, {field, static_cast<std::size_t>(at - field)}});
        if (at != m_end && *at == m_delimiter) {
            ++at;
            continue;
        }
        const char* end = at;
        if (end != m_end && *end == '\r') {
            ++end;
            // A line feed may follow in what is read next.
            if (end == m_end && !m_is_last) break;
        }
        if (end != m_end && *end == '\n') ++end;
        block.rows.push_back({first,
                              block.fields.size() - first,
                              {begin, static_cast<std::size_t>(at - begin)},
                              {at, static_cast<std::size_t>(end - at)}});
        return end;
    }
    block.fields.resize(first);
    return nullptr;
}

// From behind the opening quote to behind the field.
const char* CsvParser::parse_quoted(const char* at, Block& block, std::string_view& text) {
    const char* const begin = at;
    std::string* unquoted = nullptr;
    while (true) {
        const auto* quote =
            static_cast<const char*>(std::memchr(at, '"', static_cast<std::size_t>(m_end - at)));
        if (quote == nullptr) return nullptr;
        if (ends_field(quote + 1)) {
            text = {begin, static_cast<std::size_t>(quote - begin)};
            if (unquoted != nullptr) text = unquoted->append(at, quote);
            return quote + 1;
        }
        if (unquoted == nullptr) unquoted = &block.unquoted.emplace_back();
        unquoted->append(at, quote + 1);
        at = quote + (quote[1] == '"' ? 2 : 1);
    }
}

void append_field(std::string& line, std::string_view text, char delimiter) {
    const char quoted[] = {delimiter, '"', '\r', '\n', '\0'};
    if (text.find_first_of(quoted) == std::string_view::npos) {
        line += text;
        return;
    }
    line += '"';
    for (const char c : text) line.append(c == '"' ? 2 : 1, c);
    line += '"';
}

}  // namespace morandel::cli
