#include "formula/columns.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <stdexcept>

#include "base/floating_point.h"
#include "base/numbers.h"

namespace morandel::formula {
namespace {

template <class Integer>
std::size_t read_offset(const void* offsets, std::size_t index) {
    Integer offset = 0;
    std::memcpy(&offset, static_cast<const char*>(offsets) + index * sizeof offset, sizeof offset);
    return static_cast<std::size_t>(offset);
}

// In bytes; columns may go backwards.
std::ptrdiff_t stride_of(const morandel_column& column) {
    return static_cast<std::ptrdiff_t>(column.stride);
}

// What a row's result is where a number, or a text, is wanted.
unsigned char status_for(unsigned char status, const Value& value, bool wants_text) {
    if (status != MORANDEL_ROW_OK) return status;
    return (value.type == type_text) == wants_text ? MORANDEL_ROW_OK : MORANDEL_ROW_OTHER_TYPE;
}

}  // namespace

Columns::Columns(std::span<const morandel_column> columns, std::size_t rows)
    : m_columns(columns), m_rows(rows) {
    if (columns.size() > most_names) refuse_misuse("count");
    for (std::size_t i = 0; i < columns.size(); ++i) {
        m_texts[i] = is_text_type(columns[i].type);
        if (rows > 0) check(columns[i]);
    }
}

void Columns::check(const morandel_column& column) const {
    if (!is_text_type(column.type)) {
        if (column.numbers == nullptr) refuse_misuse("numbers == NULL");
    } else if (column.text == nullptr && column.size > 0) {
        refuse_misuse("text == NULL");
    } else if (column.offsets != nullptr) {
        check_offsets(column);
    }
}

void Columns::check_offsets(const morandel_column& column) const {
    if (column.offset_size != sizeof(std::int32_t) && column.offset_size != sizeof(std::int64_t)) {
        refuse_misuse("offset_size");
    }
    if (column.size == MORANDEL_TERMINATED) refuse_misuse("size");
    std::size_t before = offset(column, 0);
    for (std::size_t row = 1; row <= m_rows; ++row) {
        const std::size_t next = offset(column, row);
        if (next < before) refuse_misuse("offsets");
        before = next;
    }
    if (before > column.size) refuse_misuse("offsets");
}

std::size_t Columns::offset(const morandel_column& column, std::size_t index) const {
    return column.offset_size == sizeof(std::int32_t)
               ? read_offset<std::int32_t>(column.offsets, index)
               : read_offset<std::int64_t>(column.offsets, index);
}

bool Columns::is_single(std::size_t column) const {
    return m_texts[column] ? m_columns[column].offsets == nullptr : m_columns[column].stride == 0;
}

double Columns::number(std::size_t column, std::size_t row) const {
    const morandel_column& values = m_columns[column];
    double number = 0.0;
    const char* first = reinterpret_cast<const char*>(values.numbers);
    std::memcpy(&number, first + static_cast<std::ptrdiff_t>(row) * stride_of(values),
                sizeof number);
    return number;
}

std::optional<std::vector<Blocks::Column>> Columns::numbers() const {
    if (m_rows == 0 || m_texts.any()) return std::nullopt;
    std::vector<Blocks::Column> all;
    all.reserve(m_columns.size());
    for (const morandel_column& column : m_columns) {
        const auto address = reinterpret_cast<std::uintptr_t>(column.numbers);
        const std::size_t unfit = column.stride % sizeof(double) + address % alignof(double);
        if (unfit != 0) return std::nullopt;
        const bool is_kept =
            column.stride != 0 || through_decimals(*column.numbers) == *column.numbers;
        if (!is_kept) return std::nullopt;
        all.push_back({column.numbers, stride_of(column) / std::ptrdiff_t{sizeof(double)}});
    }
    return all;
}

std::string_view Columns::text(std::size_t column, std::size_t row) const {
    const morandel_column& values = m_columns[column];
    if (values.offsets == nullptr) return view(values.text, values.size);
    const std::size_t begin = offset(values, row);
    return {values.text + begin, offset(values, row + 1) - begin};
}

bool Columns::is_ascii(std::size_t column) const {
    const morandel_column& values = m_columns[column];
    const std::size_t begin = offset(values, 0);
    return formula::is_ascii({values.text + begin, offset(values, m_rows) - begin});
}

bool Columns::overlap(const double* numbers, std::size_t count) const {
    const auto address = [](const void* place) { return reinterpret_cast<std::uintptr_t>(place); };
    const std::uintptr_t begin = address(numbers);
    const std::uintptr_t end = begin + count * sizeof(double);
    const auto touches = [=](std::uintptr_t from, std::uintptr_t to) {
        return from < end && begin < to;
    };
    return std::ranges::any_of(m_columns, [&](const morandel_column& column) {
        const std::uintptr_t text = address(column.text);
        const bool is_one_text = column.offsets == nullptr;
        const std::size_t size = is_one_text ? view(column.text, column.size).size() : column.size;
        const std::uintptr_t offsets = address(column.offsets);
        const std::uintptr_t first = address(column.numbers);
        const std::uintptr_t last = first + (m_rows - 1) * column.stride;  // maybe before the first
        return is_text_type(column.type)
                   ? touches(text, text + size) ||
                         touches(offsets, offsets + (m_rows + 1) * column.offset_size)
                   : touches(std::min(first, last), std::max(first, last) + sizeof(double));
    });
}

RowComputation::RowComputation(const Prepared& prepared, const Columns& columns,
                               bool wants_all_rows)
    : m_prepared(prepared), m_columns(columns), m_rooms(columns.count()) {
    prepared.check_values(columns.count());
    m_computation.emplace(prepared.recording(columns.texts(), m_other));
    if (columns.rows() == 0) return;
    for (std::size_t i = 0; i < columns.count(); ++i) {
        if (!columns.is_single(i)) {
            m_changing.push_back(i);
            m_is_ascii[i] = wants_all_rows && columns.texts()[i] && columns.is_ascii(i);
        } else if (!set(i, 0)) {
            m_changing.push_back(i);  // to fail in each row, if none before it does
        }
    }
}

bool RowComputation::set(std::size_t column, std::size_t row) {
    if (!m_columns.texts()[column]) {
        m_computation->set_number(column, m_columns.number(column, row));
        return true;
    }
    const std::string_view text = m_columns.text(column, row);
    if (m_is_ascii[column]) {
        m_computation->set_text(column, text);
        return true;
    }
    std::string_view bytes;
    if (const auto problem = m_prepared.to_inside(text, m_rooms[column], bytes)) {
        m_problem = report_of_text(*problem, text);
        m_problem->value = static_cast<int>(column);
        return false;
    }
    m_computation->set_text(column, bytes);
    return true;
}

unsigned char RowComputation::run(std::size_t row) {
    m_problem.reset();
    for (const std::size_t column : m_changing) {
        if (!set(column, row)) return MORANDEL_ROW_NO_TEXT;
    }
    return m_computation->run() ? MORANDEL_ROW_OK : MORANDEL_ROW_FAILED;
}

Report RowComputation::report() {
    return m_problem ? *m_problem : m_prepared.report_of_failure(m_computation->fault());
}

void compute_columns(const Prepared& prepared, const Columns& columns, double* results,
                     unsigned char* status) {
    prepared.check_values(columns.count());
    const DefaultFloatingPoint environment;
    std::optional<RowComputation> computation;
    const auto compute_row = [&](std::size_t row) {
        if (!computation) computation.emplace(prepared, columns);
        const unsigned char found = status_for(computation->run(row), computation->value(), false);
        results[row] = found == MORANDEL_ROW_OK ? computation->value().number : 0.0;
        if (status != nullptr) status[row] = found;
    };
    const Blocks* const blocks = prepared.blocks(columns.texts());
    const auto numbers = blocks != nullptr ? columns.numbers() : std::nullopt;
    if (numbers) {
        if (status != nullptr) std::fill_n(status, columns.rows(), MORANDEL_ROW_OK);
        blocks->compute(*numbers, columns.rows(), results, compute_row);
    } else {
        for (std::size_t row = 0; row < columns.rows(); ++row) compute_row(row);
    }
}

Texts compute_text_columns(const Prepared& prepared, const Columns& columns,
                           unsigned char* status) {
    // There is one offset more than rows.
    if (columns.rows() == std::numeric_limits<std::size_t>::max()) throw std::length_error("rows");
    RowComputation computation(prepared, columns, true);
    Texts texts;
    texts.offsets.reserve(columns.rows() + 1);
    texts.offsets.push_back(0);
    for (std::size_t row = 0; row < columns.rows(); ++row) {
        const std::size_t begin = texts.bytes.size();
        // What the first rows take, the others are expected to take.
        constexpr std::size_t first_rows = 32;
        constexpr std::size_t most = std::size_t{16} * 1024 * 1024;  // for no more than a guess
        if (row == first_rows) {
            texts.bytes.reserve(std::min(begin / row * columns.rows() / 8 * 9, most));
        }
        unsigned char found = status_for(computation.run(row), computation.value(), true);
        if (found == MORANDEL_ROW_OK &&
            prepared.to_outside(computation.value().text, texts.bytes).has_value()) {
            found = MORANDEL_ROW_NO_TEXT;
            texts.bytes.resize(begin);
        }
        texts.offsets.push_back(texts.bytes.size());
        if (status != nullptr) status[row] = found;
    }
    return texts;
}

std::optional<Report> report_of_row(const Prepared& prepared, const Columns& columns,
                                    std::size_t row, bool wants_text) {
    // Not on the stack, which finding the place of an error needs.
    const auto computation = std::make_unique<RowComputation>(prepared, columns);
    const unsigned char found = computation->run(row);
    if (found != MORANDEL_ROW_OK) return computation->report();
    const Value& value = computation->value();
    if (status_for(found, value, wants_text) != MORANDEL_ROW_OK) {
        return report_of_reason(wants_text ? MORANDEL_REASON_NUMBER_RESULT
                                           : MORANDEL_REASON_TEXT_RESULT);
    }
    std::string text;
    if (!wants_text) return std::nullopt;
    const auto problem = prepared.to_outside(value.text, text);
    return problem ? std::optional(report_of_text(*problem, value.text)) : std::nullopt;
}

}  // namespace morandel::formula
