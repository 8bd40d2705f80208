"""Values as hosts have them, made ready for the core."""

from __future__ import annotations

import math
from typing import Any, Dict, Iterable, List, NamedTuple, Optional, Tuple

import numpy as np

from . import _arrays, _core
from ._arrays import NEITHER, NUMBER, TEXT
from ._errors import FormulaError, named_error

_CHINESE = {TEXT: "字符串", NUMBER: "数值"}
_WRONG_KIND = 22

Wrong = Dict[int, Any]
"""Values of the other kind by row, where they are failures of their rows and not of the call."""


class Column(NamedTuple):
    """Of one name: what the core takes, and the shape that it had."""

    source: Any
    shape: Tuple[int, ...]
    is_missing: bool = False
    kind: str = NUMBER
    wrong: Optional[Wrong] = None


def _wrong_kind(name: str, wanted: str, given: Any) -> TypeError:
    advice = f'kinds={{"{name}": "{TEXT}"}} takes it for one'
    if wanted == TEXT:
        advice = "astype(str) makes texts"
    told = f"the formula takes {name} for a {wanted}, and {given} was given"
    return TypeError(f"{told}; {advice}")


def _scalar(name: str, value: Any, kind: Optional[str]) -> Column:
    if isinstance(value, str):
        if kind == NUMBER:
            raise _wrong_kind(name, kind, "a text")
        return Column(value, (), False, TEXT)
    try:
        number = _core.number_of(value)
    except (TypeError, ValueError) as problem:
        raise named_error(problem, f"{name}: {problem}") from None
    if math.isnan(number):
        return Column("" if kind == TEXT else math.nan, (), True, kind or NUMBER)
    if kind == TEXT:
        raise _wrong_kind(name, kind, "a number")
    return Column(number, ())


def _categories(name: str, categories: Any, codes: Any, kind: str, wrong: Optional[Wrong]) -> Any:
    """Looks at each category once, and fails for those alone that a cell has."""
    if (codes < 0).all():
        return np.full(len(codes), np.nan if kind == NUMBER else None)
    wrong_categories: Wrong = {}
    of_each = _flat(name, np.asarray(categories), kind, wrong_categories, categories.dtype)
    if wrong is not None and len(wrong_categories) < len(categories):
        for code, value in wrong_categories.items():
            wrong.update((row, value) for row in np.flatnonzero(codes == code).tolist())
    elif np.isin(codes, list(wrong_categories)).any():
        cells = np.append(np.asarray(categories, dtype=object), np.array([None]))[codes]
        return _flat(name, cells, kind, None, cells.dtype)
    if kind == NUMBER:
        return np.append(of_each, np.nan)[codes]
    if wrong_categories:
        return np.append(of_each, np.array([None]))[codes]
    return np.asarray(codes, dtype=np.int64), list(of_each)


def _flat(name: str, array: Any, kind: str, wrong: Optional[Wrong], dtype: Any) -> Any:
    """Of one dimension: doubles for numbers, where they lie if they can stay; texts as objects."""
    whole = _arrays.kind_of_type(dtype)
    if whole == NEITHER:
        raise TypeError(f"{name}: neither numbers nor texts: a column of {dtype}")
    if array.dtype.kind in "biuf":
        if kind == NUMBER:
            return _arrays.doubles(array)
        if array.dtype.kind == "f" and np.isnan(array).all():
            return np.full(array.shape, None, dtype=object)
        raise _wrong_kind(name, kind, f"a column of {dtype}")
    if array.dtype.kind == "U":
        array = array.astype(object)
    if wrong is not None and whole is None:
        rows = _core.wrong_rows(array, kind == TEXT)
        if rows:
            wrong.update((row, array[row]) for row in rows)
            array = array.copy()
            array[rows] = None
    try:
        if kind == NUMBER:
            return _core.numbers_of(array)
        _core.check_texts(array)
        return array
    except (TypeError, ValueError) as problem:
        raise named_error(problem, f"{name}: {problem}") from None


def column_of(name: str, value: Any, kind: Optional[str], by_row: bool = False) -> Column:
    """What the core takes for a name of that kind, or of the kind that the values have. Throws
    TypeError for values of another, unless those of single rows are wanted ``by_row``."""
    wrong: Optional[Wrong] = {} if by_row else None
    if _arrays.is_of_dask(value):
        raise TypeError(f"{name}: morandel.add takes what is of Dask, in its DataFrame")
    if _arrays.is_frame(value):
        raise TypeError(f"{name}: a DataFrame was given, and one column is needed")
    if isinstance(value, (dict, set)):
        raise TypeError(f"{name}: no number, text or column: {type(value).__name__}")
    if _is_scalar(value):
        return _scalar(name, value, kind)
    if _arrays.has_categories(value):
        cells = getattr(value, "array", value)
        kind = kind or _kind_of(_arrays.of_pandas(value))
        source = _categories(name, cells.categories, cells.codes, kind, wrong)
        return Column(source, (len(value),), False, kind, wrong)
    array, dtype = _arrays.of(name, value)
    if array.ndim == 0:
        return _scalar(name, array[()], kind)
    kind = kind or _arrays.kind_of_type(dtype) or _kind_of(array)
    flat = array if array.ndim == 1 else array.reshape(-1)
    return Column(_flat(name, flat, kind, wrong, dtype), array.shape, False, kind, wrong)


def _is_scalar(value: Any) -> bool:
    is_single = value is np.ma.masked or isinstance(value, (str, bytes, bytearray))
    return is_single or not hasattr(value, "__len__")


def _kind_of(cells: Any) -> str:
    """That of the first cell that is not missing."""
    for cell in cells.flat:
        if not _core.is_missing(cell):
            return TEXT if isinstance(cell, str) else NUMBER
    return NUMBER


def common_shape(columns: Tuple[Column, ...], names: Iterable[str], index: Any) -> Tuple[int, ...]:
    """That of the index, if there is one, or else what all shapes are spread to."""
    if index is None:
        return np.broadcast_shapes(*(column.shape for column in columns))
    shape = (len(index),)
    for name, column in zip(names, columns):
        if column.shape not in ((), (1,), shape):
            raise ValueError(f"{name}: values of the shape {column.shape}, and the index has {shape}")
    return shape


def broadcast(columns: Tuple[Column, ...], shape: Tuple[int, ...]) -> Tuple[Any, ...]:
    """Sources of as many rows as the shape has."""
    sources = []
    for column in columns:
        source = column.source
        if column.shape not in ((), shape):
            if isinstance(source, tuple):
                codes, texts = source
                known: Any = [*texts, None]
                source = np.array(known, dtype=object)[codes]
            spread = np.broadcast_to(source.reshape(column.shape), shape)
            source = spread if spread.ndim == 1 else spread.reshape(-1)
        sources.append(source)
    return tuple(sources)


def with_wrong(
    errors: List[FormulaError],
    columns: Tuple[Column, ...],
    names: Tuple[str, ...],
    shape: Tuple[int, ...],
) -> List[FormulaError]:
    """By row, with those of rows that have a value of the other kind."""
    found: Dict[int, FormulaError] = {}
    for name, column in zip(names, columns):
        for row, value in (column.wrong or {}).items():
            for place in _places(row, column.shape, shape):
                if place not in found:
                    found[place] = _error_of(name, value, column.kind, place)
    if not found:
        return errors
    found.update((error.row, error) for error in errors if error.row is not None)
    return [found[row] for row in sorted(found)]


def _places(row: int, own: Tuple[int, ...], shape: Tuple[int, ...]) -> List[int]:
    """The rows of the common shape that a row of a column's own has become."""
    if own == shape:
        return [row]
    is_there = np.zeros(math.prod(own), dtype=bool)
    is_there[row] = True
    places: List[int] = np.flatnonzero(np.broadcast_to(is_there.reshape(own), shape)).tolist()
    return places


def _error_of(name: str, value: Any, kind: str, row: int) -> FormulaError:
    shown = repr(value)
    if len(shown) > 60:
        shown = shown[:57] + "..."
    return FormulaError(
        f"{name}: {shown} is not a {kind}",
        message=f"{name}：{shown} 不是{_CHINESE[kind]}",
        reason=_WRONG_KIND,
        name=name,
        row=row,
    )
