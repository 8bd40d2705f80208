"""Rows and results by the labels of pandas."""

from __future__ import annotations

from typing import Any, List

from . import _arrays
from ._errors import FormulaError


def of(given: List[Any], values: Any) -> Any:
    """Of the DataFrame, or else of the first Series; all must have the same."""
    index = values.index if _arrays.is_frame(values) else None
    for value in given:
        if not _arrays.is_series(value):
            continue
        if index is None:
            index = value.index
        elif value.index is not index and not value.index.equals(index):
            raise ValueError("the Series have different indexes")
    return index


def labelled(error: FormulaError, index: Any) -> FormulaError:
    if index is not None and error.row is not None:
        error.label = index[error.row]
    return error


def series(results: Any, index: Any) -> Any:
    import pandas

    return pandas.Series(results, index=index)
