#include "source/values.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <numeric>

#include "source/texts.h"

namespace morandel::python {
namespace {

// An exception of Python's that has the row as an attribute too.
[[noreturn]] void fail(PyObject* type, std::size_t row, const std::string& what) {
    const py::str text("row " + std::to_string(row) + ": " + what);
    const auto error = py::reinterpret_steal<py::object>(PyObject_CallOneArg(type, text.ptr()));
    if (error) {
        error.attr("row") = row;
        PyErr_SetObject(type, error.ptr());
    }
    throw py::error_already_set();
}

[[noreturn]] void refuse(const char* wanted, PyObject* object, std::size_t row) {
    fail(PyExc_TypeError, row,
         std::string("a ") + wanted + " is needed, not " + Py_TYPE(object)->tp_name);
}

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

constexpr std::size_t rows_between_signals = 65536;

// Held, since what an object does when it is asked for its number may take it off the array.
py::object object_at(const char* place) {
    PyObject* object = nullptr;
    std::memcpy(&object, place, sizeof object);
    return py::reinterpret_borrow<py::object>(object == nullptr ? Py_None : object);
}

template <class Work>
void each_object(const py::array& objects, const Work& work) {
    const char* first = static_cast<const char*>(objects.data());
    const std::ptrdiff_t stride = objects.strides(0);
    for (std::size_t row = 0; row < static_cast<std::size_t>(objects.size()); ++row) {
        if (row % rows_between_signals == 0) end_if_interrupted();
        work(row, object_at(first + static_cast<std::ptrdiff_t>(row) * stride).ptr());
    }
}

enum class Reading { number, too_large, other };

// NumPy converts dates, durations, complex numbers and texts as well.
bool is_other_of_numpy(PyObject* object) {
    if (PyFloat_Check(object) ||
        !std::string_view(Py_TYPE(object)->tp_name).starts_with("numpy.")) {
        return false;
    }
    const py::object type = py::getattr(object, "dtype", py::none());
    if (type.is_none()) return false;
    const auto kind = type.attr("kind").cast<std::string>();
    return std::string_view("biufO").find(kind) == std::string_view::npos;
}

// A missing value is a NaN. Exceptions of an object's own pass through.
Reading read_number(PyObject* object, double& number) {
    number = NAN;
    if (is_missing(object)) return Reading::number;
    if (is_other_of_numpy(object)) return Reading::other;
    number = PyFloat_AsDouble(object);
    if (number != -1.0 || PyErr_Occurred() == nullptr) return Reading::number;
    const bool is_other = PyErr_ExceptionMatches(PyExc_TypeError) != 0;
    if (!is_other && PyErr_ExceptionMatches(PyExc_OverflowError) == 0) {
        throw py::error_already_set();
    }
    PyErr_Clear();
    return is_other ? Reading::other : Reading::too_large;
}

morandel_column single_number(const double* number) {
    return {MORANDEL_NUMBER, number, 0, nullptr, nullptr, 0, 0};
}

morandel_column single_text(const std::string& text) {
    return {MORANDEL_TEXT, nullptr, 0, text.data(), nullptr, 0, text.size()};
}

}  // namespace

void end_if_interrupted() {
    if (PyErr_CheckSignals() != 0) throw py::error_already_set();
}

bool is_missing(PyObject* object) {
    if (object == Py_None) return true;
    if (PyFloat_Check(object)) return std::isnan(PyFloat_AS_DOUBLE(object));
    const std::string_view type = Py_TYPE(object)->tp_name;
    if (type.starts_with("numpy.float") || type == "decimal.Decimal") {
        const double number = PyFloat_AsDouble(object);
        if (PyErr_Occurred() == nullptr) return std::isnan(number);
        PyErr_Clear();  // a NaN that signals
        return true;
    }
    if (type == "numpy.datetime64" || type == "numpy.timedelta64") {
        // Alone NaT differs from itself; pybind11's own comparison says that nothing does.
        const auto differs =
            py::reinterpret_steal<py::object>(PyObject_RichCompare(object, object, Py_NE));
        if (!differs) throw py::error_already_set();
        return differs.cast<bool>();
    }
    return type == "NAType" || type == "NaTType" || type == "MaskedConstant" ||
           type.ends_with(".NAType") || type.ends_with(".NaTType") ||
           type.ends_with(".MaskedConstant");
}

double number_of(const py::object& object) {
    double number = 0.0;
    switch (read_number(object.ptr(), number)) {
        case Reading::too_large:
            throw py::value_error("the number is too large");
        case Reading::other:
            throw py::type_error("no number, text or column: " +
                                 std::string(Py_TYPE(object.ptr())->tp_name));
        default:
            return number;
    }
}

py::array_t<double> numbers_of(const py::array& objects) {
    py::array_t<double> numbers(objects.size());
    double* out = numbers.mutable_data();
    each_object(objects, [&](std::size_t row, PyObject* object) {
        switch (read_number(object, out[row])) {
            case Reading::number:
                return;
            case Reading::too_large:
                fail(PyExc_ValueError, row, "the number is too large");
            case Reading::other:
                refuse("number", object, row);
        }
    });
    return numbers;
}

void check_texts(const py::array& objects) {
    each_object(objects, [](std::size_t row, PyObject* object) {
        if (!PyUnicode_Check(object) && !is_missing(object)) refuse("text", object, row);
    });
}

std::vector<std::size_t> wrong_rows(const py::array& objects, bool wants_text) {
    std::vector<std::size_t> rows;
    each_object(objects, [&](std::size_t row, PyObject* object) {
        double number = 0.0;
        const bool is_right = wants_text ? PyUnicode_Check(object) || is_missing(object)
                                         : read_number(object, number) == Reading::number;
        if (!is_right) rows.push_back(row);
    });
    return rows;
}

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
