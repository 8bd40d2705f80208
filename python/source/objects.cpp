#include "source/objects.h"

#include <cmath>
#include <cstring>
#include <string_view>

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

constexpr std::size_t rows_between_signals = 65536;

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

}  // namespace

void refuse(const char* wanted, PyObject* object, std::size_t row) {
    fail(PyExc_TypeError, row,
         std::string("a ") + wanted + " is needed, not " + Py_TYPE(object)->tp_name);
}

py::object object_at(const char* place) {
    PyObject* object = nullptr;
    std::memcpy(&object, place, sizeof object);
    return py::reinterpret_borrow<py::object>(object == nullptr ? Py_None : object);
}

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

}  // namespace morandel::python
