"""Columns as hosts have them, as arrays of NumPy."""

from __future__ import annotations

from typing import Any, List, Optional, Tuple

import numpy as np

TEXT = "text"
NUMBER = "number"
NEITHER = "neither"


# The class is asked, since labels of rows and columns are attributes of a Series and a DataFrame.
def is_series(value: Any) -> bool:
    """Whether it is a column of pandas, which need not be there."""
    of = type(value)
    return hasattr(of, "dtype") and hasattr(of, "index") and hasattr(of, "array")


def has_categories(value: Any) -> bool:
    return _is_of_pandas(value) and getattr(value.dtype, "name", None) == "category"


def _is_of_pandas(value: Any) -> bool:
    """A Series, an index, or an array of its own."""
    return hasattr(type(value), "to_numpy") and hasattr(getattr(value, "dtype", None), "kind")


def is_frame(value: Any) -> bool:
    return hasattr(type(value), "columns")


def is_of_dask(value: Any) -> bool:
    return hasattr(type(value), "map_partitions")


def kind_of_type(dtype: Any) -> Optional[str]:
    """Of all cells of a column; None where each is what it is."""
    if dtype.kind in "biuf":
        return NUMBER
    if issubclass(dtype.type, str):
        return TEXT
    may_be_anything = dtype.type is object or hasattr(dtype.type, "__float__")
    return None if dtype.kind == "O" and may_be_anything else NEITHER


def doubles(array: Any) -> Any:
    fits = array.dtype == np.float64 and array.dtype.isnative and array.flags.aligned
    if not fits or array.ndim != 1 or array.strides[0] < 0:
        return np.array(array, dtype=np.float64, order="C")
    return array


def of(name: str, value: Any) -> Tuple[Any, Any]:
    """An array, and the type that it was given with."""
    if _is_of_pandas(value):
        return of_pandas(value), value.dtype
    array = value if isinstance(value, np.ndarray) else _of_list(name, value)
    is_masked = isinstance(array, np.ma.MaskedArray)
    return _without_mask(array) if is_masked else np.asarray(array), array.dtype


def of_pandas(value: Any) -> Any:
    """What pandas keeps, as an array; missing values as NaN or None."""
    if isinstance(value.dtype, np.dtype):
        return value.to_numpy()
    if kind_of_type(value.dtype) == NUMBER:
        return value.to_numpy(dtype=np.float64, na_value=np.nan)
    return value.to_numpy(dtype=object, na_value=None)


def _of_list(name: str, values: Any) -> Any:
    """A list of texts stays what it is; NumPy would make texts of one length of all that is in it."""
    values = list(values)
    types = _types(values)
    if type(np.ma.masked) in types:
        values = _without_masked(values)
    try:
        if any(issubclass(one, (str, type(None), type(np.ma.masked))) for one in types):
            return np.array(values, dtype=object)
        if any(issubclass(one, np.ma.MaskedArray) for one in types):
            stack: Any = np.ma.MaskedArray
            return stack(values)
        array = np.asarray(values)
        return np.array(values, dtype=object) if array.dtype.kind == "U" else array
    except ValueError as problem:
        raise ValueError(f"{name}: lists of different lengths: {problem}") from None


def _types(values: Any) -> "set[type]":
    """Of all that is in a list and in the lists in it."""
    types = set(map(type, values))
    if any(issubclass(one, (list, tuple)) for one in types):
        for value in values:
            if isinstance(value, (list, tuple)):
                types |= _types(value)
    return types


def _without_masked(values: Any) -> List[Any]:
    return [
        None
        if value is np.ma.masked
        else _without_masked(value)
        if isinstance(value, (list, tuple))
        else value
        for value in values
    ]


def _without_mask(array: Any) -> Any:
    """What is masked is missing, whatever lies below the mask."""
    mask = np.asarray(array.mask)
    if not mask.any():
        return np.asarray(array.data)
    plain = np.array(array.data, dtype=np.float64 if array.dtype.kind in "biuf" else object)
    plain[mask] = np.nan if plain.dtype == np.float64 else None
    return plain
