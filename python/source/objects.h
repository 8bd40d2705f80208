// Single objects of Python's as values, and arrays of them.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

namespace morandel::python {

namespace py = pybind11;

// Throws KeyboardInterrupt where one came.
void end_if_interrupted();

// The object that an array has there. Held, since what it does when it is asked for its number may
// take it off the array.
py::object object_at(const char* place);

// Throws TypeError with the row, also as an attribute.
[[noreturn]] void refuse(const char* wanted, PyObject* object, std::size_t row);

// None, NaN, and what pandas has for it.
bool is_missing(PyObject* object);

// A number of any kind as a double. Throws TypeError for something else, ValueError where it is too
// large.
double number_of(const py::object& object);

// Numbers of all kinds and missing values, as doubles. Throws TypeError with the row where there is
// something else, ValueError where a number is too large.
py::array_t<double> numbers_of(const py::array& objects);

// Throws TypeError with the row where there is something else than texts and missing values.
void check_texts(const py::array& objects);

// The rows for which the one or the other would throw.
std::vector<std::size_t> wrong_rows(const py::array& objects, bool wants_text);

}  // namespace morandel::python
