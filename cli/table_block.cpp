#include "cli/table_block.h"

#include <utility>

#include "cli/encoding.h"
#include "cli/lines.h"
#include "cli/number_format.h"
#include "cli/values.h"

namespace morandel::cli {

using State = ComputedColumn::State;

void Texts::clear() {
    bytes.clear();
    offsets.assign(1, 0);
}

void TableBlock::begin(std::size_t file_columns, std::size_t computed, bool is_gbk,
                       EmptyFields empty_fields) {
    m_file_columns = file_columns;
    m_is_gbk = is_gbk;
    m_empty_fields = empty_fields;
    m_computed.resize(computed);
    forget();
}

void TableBlock::choose(std::vector<std::size_t> rows) {
    m_rows = std::move(rows);
    forget();
}

void TableBlock::forget() {
    for (auto& [column, known] : m_numbers) known.is_known = false;
    for (auto& [column, known] : m_texts) known.is_known = false;
}

std::string_view TableBlock::field(std::size_t column, std::size_t row) const {
    const Row& all = read.rows[row];
    return column < all.count ? read.fields[all.first + column].text : std::string_view();
}

Read TableBlock::read_field(std::string_view text, double& number) const {
    if (read_number(text, number) || read_number(trim(text), number)) return Read::value;
    number = 0.0;
    if (!trim(text).empty()) return Read::no_number;
    return m_empty_fields == EmptyFields::are_zero ? Read::value : Read::empty;
}

Read TableBlock::number(std::size_t column, Place place, double& number) const {
    if (column < m_file_columns) return read_field(field(column, place.row), number);
    const ComputedColumn& computed = m_computed[column - m_file_columns];
    number = 0.0;
    switch (computed.states[place.chosen]) {
        case State::number:
            number = computed.numbers[place.chosen];
            return Read::value;
        case State::text:
            return read_field(computed.texts[place.chosen], number);
        default:
            return Read::no_value;
    }
}

Read TableBlock::text(std::size_t column, Place place, std::string& text) const {
    if (column < m_file_columns) {
        text += field(column, place.row);
        return Read::value;
    }
    const ComputedColumn& computed = m_computed[column - m_file_columns];
    switch (computed.states[place.chosen]) {
        case State::number:
            append_number(text, computed.numbers[place.chosen]);
            return Read::value;
        case State::text:
            text += computed.texts[place.chosen];
            return Read::value;
        default:
            return Read::no_value;
    }
}

std::string TableBlock::shown(std::size_t column, Place place) const {
    std::string shown;
    (void)text(column, place, shown);
    return m_is_gbk ? to_utf8(shown) : shown;
}

const NumberColumn& TableBlock::numbers(std::size_t column) {
    auto& [is_known, numbers] = m_numbers[column];
    if (std::exchange(is_known, true)) return numbers;
    numbers.values.resize(chosen());
    numbers.reads.resize(chosen());
    for (std::size_t i = 0; i < chosen(); ++i) {
        numbers.reads[i] = number(column, chosen_place(i), numbers.values[i]);
    }
    return numbers;
}

const TextColumn& TableBlock::texts(std::size_t column) {
    auto& [is_known, all] = m_texts[column];
    if (std::exchange(is_known, true)) return all;
    all.texts.clear();
    all.reads.resize(chosen());
    for (std::size_t i = 0; i < chosen(); ++i) {
        all.reads[i] = text(column, chosen_place(i), all.texts.bytes);
        all.texts.end_text();
    }
    return all;
}

}  // namespace morandel::cli
