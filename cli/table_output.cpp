#include "cli/table_output.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <utility>

#include "cli/encoding.h"
#include "cli/lines.h"
#include "cli/messages.h"

namespace morandel::cli {
namespace {

using State = ComputedColumn::State;

constexpr std::string_view blank_row = "\"\"";  // a blank line would be no row

// JSON is UTF-8, whatever the table is.
std::string json_text(const std::string& text) {
    if (!is_utf8(text)) throw EncodingError(say("a text is not UTF-8; is it --encoding gbk?"));
    return nlohmann::json(text).dump();
}

// JSON has no infinities and no NaN; they are given as texts.
void append_json_number(std::string& out, const NumberFormat& format, double number) {
    if (!std::isfinite(number)) out += '"';
    format.append(out, number);
    if (!std::isfinite(number)) out += '"';
}

// A field's own digits, where they are a number of JSON. An empty one is null, also where formulas
// take it for 0.
void append_own_number(std::string& out, std::string_view field, double number) {
    const std::string_view digits = trim(field);
    if (digits.empty()) {
        out += "null";
    } else if (std::isfinite(number) && nlohmann::json::accept(digits)) {
        out += digits;
    } else {
        append_json_number(out, NumberFormat(), number);
    }
}

}  // namespace

void TableOutput::choose(const Columns& columns, std::vector<WrittenColumn> written,
                         const std::vector<bool>& numbers) {
    m_written = std::move(written);
    m_numbers = numbers;
    m_keys.clear();
    for (const WrittenColumn& column : m_written) {
        if (!m_style.json) continue;
        const std::string& title = columns[column.title].title;
        std::string key = json_text(title) + ':';
        if (std::ranges::find(m_keys, key) != m_keys.end()) {
            throw Problem(
                say("two columns are called '{0}', which one object of JSON cannot hold", title));
        }
        m_keys.push_back(std::move(key));
    }
    m_file_columns = numbers.size();
    m_copies_rows = m_written.size() >= m_file_columns;
    for (std::size_t i = 0; m_copies_rows && i < m_file_columns; ++i) {
        m_copies_rows = m_written[i].value == i;
    }
}

void TableOutput::append_header(std::string& out, const Row& row, const Columns& columns,
                                std::span<const Field> fields) const {
    if (m_style.json || !m_style.has_header) return;
    const std::size_t start = out.size();
    for (std::size_t i = 0; i < m_written.size(); ++i) {
        if (i > 0) out += m_style.delimiter;
        const std::size_t index = m_written[i].title;
        if (index < fields.size()) {
            out += fields[index].raw;
        } else {
            const std::string& title = columns[index].title;
            append_field(out, m_style.is_gbk ? to_gbk(title) : title, m_style.delimiter);
        }
    }
    if (out.size() == start) out += blank_row;
    out += row.end;
}

void TableOutput::append_row(std::string& out, const TableBlock& block, Place place) const {
    if (m_style.json) {
        append_json(out, block, place);
        return;
    }
    const Row& row = block.read.rows[place.row];
    const std::size_t start = out.size();
    std::size_t i = 0;
    if (m_copies_rows) {
        out += row.raw;
        for (std::size_t missing = row.count; missing < m_file_columns; ++missing) {
            out += m_style.delimiter;
        }
        i = m_file_columns;
    }
    for (; i < m_written.size(); ++i) {
        if (i > 0) out += m_style.delimiter;
        const std::size_t index = m_written[i].value;
        if (index >= m_file_columns) {
            append_computed(out, block.computed(index - m_file_columns), place.chosen);
        } else if (index < row.count) {
            out += block.read.fields[row.first + index].raw;
        }
    }
    if (out.size() == start) out += blank_row;
    out += row.end;
}

void TableOutput::append_computed(std::string& out, const ComputedColumn& computed,
                                  std::size_t index) const {
    const State state = computed.states[index];
    if (state == State::text) append_field(out, computed.texts[index], m_style.delimiter);
    if (state != State::number) return;
    constexpr std::string_view of_numbers = "+-.0123456789einfa";
    if (of_numbers.find(m_style.delimiter) == std::string_view::npos) {
        m_style.numbers.append(out, computed.numbers[index]);
        return;
    }
    std::string number;
    m_style.numbers.append(number, computed.numbers[index]);
    append_field(out, number, m_style.delimiter);
}

void TableOutput::append_json(std::string& out, const TableBlock& block, Place place) const {
    for (std::size_t i = 0; i < m_written.size(); ++i) {
        out += i == 0 ? '{' : ',';
        out += m_keys[i];
        append_json_value(out, m_written[i].value, block, place);
    }
    out += "}\n";
}

// A number's field that is empty is null, one that reads as no number a text.
void TableOutput::append_json_value(std::string& out, std::size_t index, const TableBlock& block,
                                    Place place) const {
    double number = 0.0;
    bool is_text = false;
    Read read = Read::value;
    if (index < m_file_columns) {
        is_text = !m_numbers[index];
        if (!is_text) read = block.number(index, place, number);
        is_text = is_text || read == Read::no_number;
    } else {
        const ComputedColumn& computed = block.computed(index - m_file_columns);
        const State state = computed.states[place.chosen];
        is_text = state == State::text;
        if (state == State::number) number = computed.numbers[place.chosen];
        if (state != State::number && !is_text) read = Read::no_value;
    }
    if (is_text) {
        out += json_text(block.shown(index, place));
    } else if (read != Read::value) {
        out += "null";
    } else if (index < m_file_columns) {
        append_own_number(out, block.field(index, place.row), number);
    } else {
        append_json_number(out, m_style.numbers, number);
    }
}

}  // namespace morandel::cli
