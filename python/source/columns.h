// Columns of results for Python.

#pragma once

#include <cstddef>
#include <vector>

#include <pybind11/numpy.h>

#include <morandel/formula.hpp>

#include "source/values.h"

namespace morandel::python {

// A result for each row, an array of doubles or of texts, and the rows that failed, in order. Where
// a value of a row is missing, its result is: NaN or None; so are those of rows that failed. Rows
// after a block in which one failed are left alone if that is to end it.
py::tuple compute_columns(const Formula& formula, const std::vector<Source>& sources,
                          std::size_t rows, bool wants_text, bool ends_at_failure);

// Throws why a row fails, as a C++ FormulaError.
void throw_row_error(const Formula& formula, const std::vector<Source>& sources, std::size_t row,
                     bool wants_text);

}  // namespace morandel::python
