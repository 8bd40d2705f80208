"""Python by ctypes, with nothing but the library: python3 prepared.py LIBRARY

LIBRARY is libmorandel.so.10, or Morandel10.dll of Python's own kind, 64 or 32 bit."""

import ctypes
import sys
from ctypes import POINTER, byref, c_char_p, c_double, c_int, c_size_t, c_ubyte, c_void_p


class Position(ctypes.Structure):
    _fields_ = [("byte", c_size_t), ("character", c_size_t), ("bytes", c_size_t), ("characters", c_size_t)]


class Column(ctypes.Structure):
    _fields_ = [("type", c_int), ("numbers", POINTER(c_double)), ("stride", c_size_t), ("text", c_char_p),
                ("offsets", c_void_p), ("offset_size", c_size_t), ("size", c_size_t)]


NUMBER = 1
library = ctypes.CDLL(sys.argv[1])


def declare(name, result, *arguments):
    function = getattr(library, "morandel_" + name)
    function.restype, function.argtypes = result, arguments
    return function


formula_prepare = declare("formula_prepare", c_int, c_char_p, c_size_t, c_void_p, c_size_t, c_int,
                          POINTER(c_void_p), POINTER(c_void_p))
formula_compute_numbers = declare("formula_compute_numbers", c_int, c_void_p, POINTER(c_double), c_size_t,
                                  POINTER(c_double))
formula_columns = declare("formula_columns", c_int, c_void_p, POINTER(Column), c_size_t, c_size_t,
                          POINTER(c_double), POINTER(c_ubyte), POINTER(c_void_p))
formula_free = declare("formula_free", None, c_void_p)
error_position = declare("error_position", c_int, c_void_p, POINTER(Position))
error_english = declare("error_english", c_char_p, c_void_p, POINTER(c_size_t))
error_free = declare("error_free", None, c_void_p)


class FormulaError(ValueError):
    def __init__(self, error):
        message = error_english(error, None).decode()
        position = Position()
        if error_position(error, byref(position)):
            message = f"character {position.character}: {message}"
        error_free(error)
        super().__init__(message)


class Formula:
    """Its names are in the order of their first appearance."""

    def __init__(self, text):
        self._handle, error, data = c_void_p(), c_void_p(), text.encode()
        if not formula_prepare(data, len(data), None, 0, 0, byref(self._handle), byref(error)):
            raise FormulaError(error)

    def __del__(self):
        formula_free(self._handle)

    def __call__(self, *numbers):
        result = c_double()
        if not formula_compute_numbers(self._handle, (c_double * len(numbers))(*numbers), len(numbers),
                                       byref(result)):
            raise ArithmeticError(numbers)
        return result.value

    def columns(self, rows, *values):
        """A value is one number for all rows, or as many as there are rows."""
        numbers = [(c_double * rows)(*value) if isinstance(value, list) else c_double(value) for value in values]
        columns = (Column * len(values))()
        for column, value in zip(columns, numbers):
            column.type = NUMBER
            column.numbers = ctypes.cast(byref(value), POINTER(c_double))
            column.stride = 0 if isinstance(value, c_double) else ctypes.sizeof(c_double)
        results, error = (c_double * rows)(), c_void_p()
        if not formula_columns(self._handle, columns, len(columns), rows, results, None, byref(error)):
            raise FormulaError(error)
        return list(results)


formula = Formula("price*qty")
print(f"total = {formula(12.5, 3):g}")
print("totals =", ", ".join(f"{total:g}" for total in formula.columns(3, 12.5, [1, 2, 4])))
try:
    Formula("(price*qty")
except FormulaError as error:
    print(error)
