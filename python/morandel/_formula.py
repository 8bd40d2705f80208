"""Formulas, prepared once and computed for values or for columns of them."""

from __future__ import annotations

import math
from collections.abc import Mapping
from typing import Any, Dict, List, Literal, Optional, Tuple, Union

import numpy as np

from . import _arrays, _core, _index, _titles, _values, _warnings
from ._errors import Fault, FormulaError, Position, Told, Warning

OnError = Literal["raise", "nan", "collect"]

_KINDS = {_values.NUMBER: 1, _values.TEXT: 2}
# Of a row that failed and does not when its error is asked for.
_CHANGED: Told = (-1, 15, "值在计算时改变", "the values changed while they were computed", None, -1)


def check_on_error(on_error: str) -> None:
    if on_error not in ("raise", "nan", "collect"):
        raise ValueError(f'on_error is "raise", "nan" or "collect", not {on_error!r}')


class Formula:
    """A formula made ready. It cannot change, can be pickled, and threads may share it.

    >>> import morandel
    >>> f = morandel.Formula('strcat(name, "·", r2s(price, 2))')
    >>> f.names
    {'name': 'text', 'price': 'number'}
    >>> f(name="苹果", price=12.5)
    '苹果·12.5'
    >>> f(name=["苹果", None], price=[12.5, 3])
    array(['苹果·12.5', None], dtype=object)

    The formula decides what its names are. Where it takes a name that could be either for the
    wrong one, ``kinds`` tells.

    >>> morandel.Formula("item", kinds={"item": "text"}).names
    {'item': 'text'}

    What the language accepts and a person rarely means is told once, as a
    :class:`FormulaWarning`; ``strict=True`` makes it a :class:`FormulaError`.
    """

    __slots__ = ("_text", "_kinds", "_prepared", "_names", "_gives_text", "__weakref__")

    _text: str
    _kinds: Dict[str, str]
    _prepared: _core.Prepared
    _names: Dict[str, str]
    _gives_text: bool

    def __init__(
        self, text: str, kinds: Optional[Mapping[str, str]] = None, *, strict: bool = False
    ) -> None:
        self._prepare(text, kinds)
        _warnings.tell(text, self.warnings, strict, None, 2)

    @classmethod
    def _quiet(cls, text: str, kinds: Optional[Mapping[str, str]] = None) -> Formula:
        formula = cls.__new__(cls)
        formula._prepare(text, kinds)
        return formula

    @classmethod
    def _told(cls, text: str, strict: bool, column: Optional[str], level: int) -> Formula:
        formula = cls._quiet(text)
        _warnings.tell(text, formula.warnings, strict, column, level + 1)
        return formula

    def _prepare(self, text: str, kinds: Optional[Mapping[str, str]]) -> None:
        if not isinstance(text, str):
            raise TypeError(f"text: a formula is a str, not {type(text).__name__}")
        if kinds is not None and not isinstance(kinds, Mapping):
            raise TypeError(f"kinds: names and kinds are a mapping, not {type(kinds).__name__}")
        self._text = text
        self._kinds = dict(kinds or {})
        for name, kind in self._kinds.items():
            if kind not in _KINDS:
                raise ValueError(f'{name}: a kind is "number" or "text", not {kind!r}')
        told = {name: _KINDS[kind] for name, kind in self._kinds.items()}
        self._prepared = _core.prepare(text, told)
        self._names = {
            name: _values.TEXT if is_text else _values.NUMBER
            for name, is_text in self._prepared.names()
        }
        for name in self._kinds:
            if name not in self._names:
                raise ValueError(f"kinds: the formula has no name {name!r}")
        self._gives_text = self._prepared.gives_text()

    @property
    def text(self) -> str:
        """The formula as it was given."""
        return self._text

    @property
    def names(self) -> Dict[str, str]:
        """What values are wanted for, in the order of appearance: "number" or "text"."""
        return dict(self._names)

    @property
    def kind(self) -> str:
        """What it gives, "number" or "text".

        >>> Formula("strlen(name)").kind, Formula("strtrims(name)").kind
        ('number', 'text')
        """
        return _values.TEXT if self._gives_text else _values.NUMBER

    @property
    def warnings(self) -> List[Warning]:
        """What the language accepts and a person rarely means.

        >>> import warnings
        >>> with warnings.catch_warnings():
        ...     warnings.simplefilter("ignore")
        ...     f = Formula("1,000 * 3")
        >>> [warning.english for warning in f.warnings]
        ["the computation ends at ','; the text from there on does not count"]
        """
        return _warnings.found(self._prepared, self._text, self._kinds)

    def check(self) -> List[Fault]:
        """What the checker finds, see :func:`morandel.check`."""
        wanted = {number: kind for kind, number in _KINDS.items()}
        faults = [
            Fault(kind, operand, wanted.get(wants), name, Position(*position))
            for kind, operand, wants, name, position in self._prepared.check()
        ]
        told = {fault.position for fault in faults}
        for warning in self.warnings:
            if warning.position is not None and warning.position not in told:
                faults.append(Fault(-1, 0, None, "", warning.position, warning.english, warning.message, warning.reason))
        return sorted(faults, key=lambda fault: fault.position.byte)

    def __call__(
        self,
        values: Union[Mapping[str, Any], Any, None] = None,
        /,
        *,
        on_error: OnError = "raise",
        **named: Any,
    ) -> Any:
        """Computes for values by name, or for the columns of a DataFrame; named values come first.

        Numbers, texts, lists, arrays and Series go together as NumPy puts shapes together. What is
        computed of numbers and texts alone is a float, an int or a str; else it is an array, of
        doubles or of texts, or a Series with the index of the first one given.

        Where a value is missing (None, NaN, NA), so is the result: NaN, or None for texts.

        ``on_error``: "raise" throws the :class:`FormulaError` of the first row that fails, "nan"
        leaves such results missing, "collect" gives the results and a list of all errors.

        >>> share = Formula("total / count")
        >>> share(total=100, count=8)
        12.5
        >>> share(total=100, count=[4, 0, 8], on_error="nan")
        array([25. ,  nan, 12.5])
        >>> results, errors = share(total=100, count=[4, 0, 8], on_error="collect")
        >>> errors[0].row, errors[0].number
        (1, 3)
        """
        check_on_error(on_error)
        return self._call(values, on_error, named)

    def _call(self, values: Any, on_error: OnError, named: Mapping[str, Any]) -> Any:
        _check_values(values)
        given = [self._value(name, values, named) for name in self._names]
        index = _index.of(given, values)
        columns = tuple(
            _values.column_of(name, value, None if self._is_alone() else kind, on_error != "raise")
            for (name, kind), value in zip(self._names.items(), given)
        )
        if index is None and all(column.shape == () for column in columns):
            return self._compute_once(columns, on_error)
        shape = _values.common_shape(columns, self._names, index)
        sources, rows = _values.broadcast(columns, shape), math.prod(shape)
        formula = self._for(columns)
        if any(column.is_missing for column in columns):
            results, failed = _all_missing(rows, formula._gives_text), np.empty(0, np.int64)
        else:
            results, failed = formula._columns(sources, rows, on_error == "raise")
        errors: List[FormulaError] = []
        if failed.size and on_error != "nan":
            wanted = failed[:1] if on_error == "raise" else failed
            errors = formula._errors(sources, wanted.tolist())
            if on_error == "raise":
                raise _index.labelled(errors[0], index)
        if on_error == "collect":
            errors = _values.with_wrong(errors, columns, tuple(self._names), shape)
        shaped = results if results.shape == shape else results.reshape(shape)
        if index is not None:
            for error in errors:
                _index.labelled(error, index)
            shaped = _index.series(shaped, index)
        return (shaped, errors) if on_error == "collect" else shaped

    def _value(self, name: str, values: Any, named: Mapping[str, Any]) -> Any:
        if name in named:
            return named[name]
        if values is None:
            raise TypeError(f"no value for {name}")
        if _arrays.is_frame(values):
            title = _titles.find(name, values.columns)
            value = values[title]
            if _arrays.is_frame(value):
                raise ValueError(f"{name}: the DataFrame has several columns {title!r}")
            return value
        if name not in values.keys():
            raise TypeError(f"no value for {name}")
        return values[name]

    def _is_alone(self) -> bool:
        """Whether it is nothing but a name, which takes whatever there is."""
        return len(self._names) == 1 and self._text.strip() in self._names and not self._kinds

    def _for(self, columns: Tuple[_values.Column, ...]) -> Formula:
        kinds = {name: column.kind for name, column in zip(self._names, columns)}
        return self if kinds == self._names else Formula._quiet(self._text, kinds)

    def _compute_once(self, columns: Tuple[_values.Column, ...], on_error: OnError) -> Any:
        result: Any = None if self._gives_text else math.nan
        errors: List[FormulaError] = []
        if not any(column.is_missing for column in columns):
            told = self._prepared.compute([column.source for column in columns])
            if isinstance(told, tuple):
                errors.append(FormulaError._of(told, tuple(self._names)))
                if on_error == "raise":
                    raise errors[0]
            else:
                result = told
        return (result, errors) if on_error == "collect" else result

    def _columns(self, sources: Tuple[Any, ...], rows: int, ends: bool) -> Tuple[Any, Any]:
        return self._prepared.columns(sources, rows, self._gives_text, ends)

    def _errors(self, sources: Tuple[Any, ...], rows: List[int]) -> List[FormulaError]:
        names = tuple(self._names)
        told = self._prepared.row_errors(sources, rows, self._gives_text)
        return [FormulaError._of(one or _CHANGED, names, row) for one, row in zip(told, rows)]

    def __repr__(self) -> str:
        kinds = f", {self._kinds!r}" if self._kinds else ""
        return f"Formula({self._text!r}{kinds})"

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Formula):
            return NotImplemented
        return self._text == other._text and self._kinds == other._kinds

    def __hash__(self) -> int:
        return hash((self._text, tuple(sorted(self._kinds.items()))))

    def __reduce__(self) -> Any:
        return type(self)._quiet, (self._text, self._kinds), getattr(self, "__dict__", None)


def _check_values(values: Any) -> None:
    if _arrays.is_frame(values):
        if _arrays.is_of_dask(values):
            raise TypeError("values: morandel.add takes a DataFrame of Dask")
        _titles.check(values.columns)
    elif values is not None and not isinstance(values, Mapping):
        if not hasattr(values, "__getitem__") or not hasattr(values, "keys"):
            raise TypeError(f"values: a mapping or a DataFrame, not {type(values).__name__}")


def _all_missing(rows: int, gives_text: bool) -> Any:
    return np.full(rows, None, dtype=object) if gives_text else np.full(rows, np.nan)


def evaluate(
    text: str,
    values: Optional[Mapping[str, Any]] = None,
    /,
    *,
    strict: bool = False,
    **named: Any,
) -> Any:
    """Prepares a formula and computes it once; ``strict`` is as for :class:`Formula`.

    >>> import morandel
    >>> morandel.evaluate("preci(price * qty, 2)", price=2.675, qty=3)
    8.03
    >>> morandel.evaluate("strcat(name, \\"!\\")", name="苹果")
    '苹果!'
    """
    return Formula._told(text, strict, None, 2)(values, **named)


def check(text: str) -> List[Fault]:
    """What the checker finds of a formula, with kind, operand and position, and the warnings.

    >>> import morandel
    >>> for fault in morandel.check('sqrt("a") + 1'):
    ...     print(fault.name, fault.kind, fault.operand, fault.wants, fault.position.character)
    sqrt 1 1 number 0
    >>> [fault.english for fault in morandel.check("1;2")]
    ["';' starts nothing; the text from there on is not read"]
    """
    return Formula._quiet(text).check()
