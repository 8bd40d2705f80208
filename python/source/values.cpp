#include "source/values.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <numeric>

#include "source/objects.h"
#include "source/texts.h"

namespace morandel::python {
namespace {

// Whether there may be a NaN. Nought times a NaN or an infinity is a NaN, and so is any sum with
// it; eight sums at a time, of which the compiler makes vector code.
bool may_have_nan(const double* numbers, std::size_t count) {
    std::array<double, 8> sums{};
    std::size_t i = 0;
    for (; i + sums.size() <= count; i += sums.size()) {
        for (std::size_t k = 0; k < sums.size(); ++k) sums[k] += numbers[i + k] * 0.0;
    }
    for (; i < count; ++i) sums[0] += numbers[i] * 0.0;
    return std::isnan(std::accumulate(sums.begin(), sums.end(), 0.0));
}

morandel_column single_number(const double* number) {
    return {MORANDEL_NUMBER, number, 0, nullptr, nullptr, 0, 0};
}

morandel_column single_text(const std::string& text) {
    return {MORANDEL_TEXT, nullptr, 0, text.data(), nullptr, 0, text.size()};
}

}  // namespace

Source::Source(const py::handle& value) : m_owner(py::reinterpret_borrow<py::object>(value)) {
    if (py::isinstance<py::str>(value)) {
        m_kind = Kind::text;
        append_utf8(value.ptr(), m_text);
    } else if (py::isinstance<py::array>(value)) {
        read_array(py::reinterpret_borrow<py::array>(value));
    } else if (py::isinstance<py::tuple>(value)) {
        read_categories(py::reinterpret_borrow<py::tuple>(value));
    } else {
        m_number = value.cast<double>();
    }
}

void Source::read_array(const py::array& array) {
    // Equal, not the same: an array that was unpickled has a type of its own.
    const bool has_numbers = array.dtype().equal(py::dtype::of<double>());
    if (array.ndim() != 1 || (!has_numbers && array.dtype().kind() != 'O')) {
        throw py::type_error("a column is an array of doubles or of objects");
    }
    m_kind = has_numbers ? Kind::numbers : Kind::objects;
    m_data = static_cast<const char*>(array.data());
    m_stride = array.strides(0);
    m_rows = static_cast<std::size_t>(array.size());
    if (has_numbers && m_stride < 0) throw py::type_error("a stride is negative");
}

void Source::read_categories(const py::tuple& pair) {
    m_kind = Kind::categories;
    const auto codes = pair[0].cast<py::array_t<std::int64_t>>();
    m_owner = codes;
    m_data = reinterpret_cast<const char*>(codes.data());
    m_stride = codes.strides(0);
    m_rows = static_cast<std::size_t>(codes.size());
    for (const py::handle& text : pair[1].cast<py::sequence>()) {
        if (!py::isinstance<py::str>(text)) {
            refuse("text", text.ptr(), m_categories.size());
        }
        append_utf8(text.ptr(), m_categories.emplace_back());
    }
    for (std::size_t row = 0; row < m_rows; ++row) {
        const std::size_t code = category(row);
        if (code != SIZE_MAX && code >= m_categories.size()) {
            throw py::index_error("a code without a category");
        }
    }
}

void Source::check(std::size_t rows) const {
    const bool is_single = m_kind == Kind::number || m_kind == Kind::text;
    if (!is_single && m_rows < rows) throw py::value_error("a column has too few rows");
}

const char* Source::at(std::size_t row) const {
    return m_data + static_cast<std::ptrdiff_t>(row) * m_stride;
}

bool Source::is_plain_column() const {
    return m_stride == static_cast<std::ptrdiff_t>(sizeof(double)) &&
           reinterpret_cast<std::uintptr_t>(m_data) % alignof(double) == 0;
}

// SIZE_MAX for the code -1, a missing value.
std::size_t Source::category(std::size_t row) const {
    std::int64_t code = 0;
    std::memcpy(&code, at(row), sizeof code);
    return static_cast<std::size_t>(code);
}

bool Source::mark_missing(std::size_t begin, std::vector<unsigned char>& missing) const {
    const std::size_t count = missing.size();
    bool any = false;
    const auto mark = [&](const auto& lacks) {
        for (std::size_t i = 0; i < count; ++i) {
            if (!lacks(begin + i)) continue;
            missing[i] = 1;
            any = true;
        }
    };
    const auto number = [this](std::size_t row) {
        double value = 0.0;
        std::memcpy(&value, at(row), sizeof value);
        return value;
    };
    switch (m_kind) {
        case Kind::number:
        case Kind::text:
            return false;
        case Kind::numbers: {
            const auto* numbers = reinterpret_cast<const double*>(at(begin));
            if (is_plain_column() && !may_have_nan(numbers, count)) return false;
            mark([&](std::size_t row) { return std::isnan(number(row)); });
            return any;
        }
        case Kind::objects:
            mark([this](std::size_t row) {
                const py::object value = object_at(at(row));
                if (py::isinstance<py::str>(value)) return false;
                if (!is_missing(value.ptr())) refuse("text", value.ptr(), row);
                return true;
            });
            return any;
        case Kind::categories:
            mark([this](std::size_t row) { return category(row) == SIZE_MAX; });
            return any;
    }
    return any;
}

void Source::append_text(std::size_t row, std::string& bytes) const {
    if (m_kind == Kind::categories) {
        bytes += m_categories[category(row)];
        return;
    }
    // Signal handlers and threads may have put something else there since it was looked at.
    const py::object value = object_at(at(row));
    if (!py::isinstance<py::str>(value)) refuse("text", value.ptr(), row);
    append_utf8(value.ptr(), bytes);
}

morandel_column Source::single(std::size_t row, std::string& room) const {
    switch (m_kind) {
        case Kind::number:
            return single_number(&m_number);
        case Kind::text:
            return single_text(m_text);
        case Kind::numbers:
            return single_number(reinterpret_cast<const double*>(at(row)));
        default:
            room.clear();
            append_text(row, room);
            return single_text(room);
    }
}

morandel_column Source::block(std::size_t begin, std::size_t count,
                              const std::vector<std::size_t>* rows, Room& room) const {
    if (m_kind == Kind::number) return single_number(&m_number);
    if (m_kind == Kind::text) return single_text(m_text);
    const std::size_t wanted = rows == nullptr ? count : rows->size();
    const auto row_of = [&](std::size_t i) { return begin + (rows == nullptr ? i : (*rows)[i]); };
    if (m_kind != Kind::numbers) {
        room.bytes.clear();
        room.offsets.assign(1, 0);
        for (std::size_t i = 0; i < wanted; ++i) {
            append_text(row_of(i), room.bytes);
            room.offsets.push_back(room.bytes.size());
        }
        return {MORANDEL_TEXT,       nullptr,          0, room.bytes.data(), room.offsets.data(),
                sizeof(std::size_t), room.bytes.size()};
    }
    if (rows == nullptr) {
        return {MORANDEL_NUMBER,
                reinterpret_cast<const double*>(at(begin)),
                static_cast<std::size_t>(m_stride),
                nullptr,
                nullptr,
                0,
                0};
    }
    room.numbers.resize(wanted);
    for (std::size_t i = 0; i < wanted; ++i) {
        std::memcpy(&room.numbers[i], at(row_of(i)), sizeof(double));
    }
    return {MORANDEL_NUMBER, room.numbers.data(), sizeof(double), nullptr, nullptr, 0, 0};
}

}  // namespace morandel::python
