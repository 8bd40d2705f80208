// Python's texts as UTF-8 and back.

#pragma once

#include <string>
#include <string_view>

#include <pybind11/pybind11.h>

namespace morandel::python {

// Appends a str as UTF-8, without leaving a copy in it. Half of a pair is written as it stands,
// which the library refuses.
void append_utf8(PyObject* text, std::string& bytes);

// A new str of UTF-8 that is well-formed, as the library writes it.
PyObject* str_of(std::string_view bytes);

}  // namespace morandel::python
