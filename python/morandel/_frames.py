"""New columns of a DataFrame, of pandas or of Dask."""

from __future__ import annotations

from collections.abc import Mapping
from typing import Any, Dict, List, Optional, Tuple, Union

from . import _arrays, _titles, _warnings
from ._errors import FormulaError, named_error
from ._formula import Formula, OnError, check_on_error

Formulas = Dict[str, Formula]

ERROR_COLUMNS = {
    "error_column": "object",
    "error_number": "int64",
    "error_message": "object",
    "error_english": "object",
    "error_position": "Int64",
}


def add(
    df: Any,
    formulas: Optional[Mapping[str, Union[str, Formula]]] = None,
    /,
    *,
    on_error: OnError = "raise",
    origin: Optional[str] = None,
    strict: bool = False,
    **named: Union[str, Formula],
) -> Any:
    """A DataFrame with computed columns besides its own, in any order.

    A formula sees the columns and what the other formulas compute; one that uses its own name
    means the column that was there before. A column is reached by its title, or by the title with
    "_" for each character that no name has.

    >>> import morandel, pandas
    >>> df = pandas.DataFrame({"name": ["苹果", "梨"], "price": [12.5, 2], "qty": [3, 10]})
    >>> df.pipe(morandel.add, code="strcat(name, r2s(total, 1))", total="price * qty")
      name  price  qty    code  total
    0   苹果   12.5    3  苹果37.5   37.5
    1    梨    2.0   10     梨20   20.0

    ``on_error`` is as for :class:`Formula`; "collect" gives the DataFrame and another one of the
    rows that failed, as they were given, with what went wrong in columns "error_...".

    >>> _, errors = df.pipe(morandel.add, share="price / (qty - 3)", on_error="collect")
    >>> errors[["name", "error_column", "error_number", "error_position"]]
      name error_column  error_number  error_position
    0   苹果        share             3               6

    ``origin`` is a column that tells where a row is from, as ``include_path_column`` makes one;
    errors tell it. ``strict`` is as for :class:`Formula`. For a DataFrame of Dask nothing is computed yet.
    """
    check_on_error(on_error)
    _check_frame(df, on_error, origin)
    if formulas is not None and not isinstance(formulas, Mapping):
        raise TypeError(f"formulas: a mapping by title, not {type(formulas).__name__}")
    wanted = {**(formulas or {}), **named}
    prepared: Formulas = {}
    for name, formula in wanted.items():
        if not isinstance(formula, Formula):
            formula = _prepared(name, formula, strict)
        elif strict:
            _warnings.tell(formula.text, formula.warnings, strict, name, 2)
        prepared[name] = formula
    order = _order(prepared, df.columns)
    if _arrays.is_of_dask(df):
        from . import _dask

        return _dask.add(df, prepared, order, on_error, origin)
    return add_columns(df, prepared, order, on_error, origin)


def _check_frame(df: Any, on_error: str, origin: Optional[str]) -> None:
    if not _arrays.is_frame(df) or not hasattr(type(df), "assign"):
        raise TypeError(f"df: a DataFrame of pandas or Dask, not {type(df).__name__}")
    _titles.check(df.columns)
    if origin is not None and origin not in df.columns:
        raise KeyError(f"origin: there is no column {origin!r}")
    taken = [title for title in ERROR_COLUMNS if title in df.columns]
    if on_error == "collect" and taken:
        raise ValueError(
            f"df: the column {taken[0]!r} would be lost in the rows that failed; rename it"
        )


def _prepared(name: str, text: str, strict: bool) -> Formula:
    if not isinstance(text, str):
        raise TypeError(f"{name}: a formula is a str or a Formula, not {type(text).__name__}")
    try:
        return Formula._told(text, strict, name, 3)
    except FormulaError as error:
        error.column = name
        raise


def _order(formulas: Formulas, columns: Any) -> List[str]:
    """Each formula after those that it needs. Throws ValueError that names a cycle."""
    order: List[str] = []
    path: List[str] = []
    needs = {name: _needs(name, formulas, columns) for name in formulas}
    for start in formulas:
        path = [start]
        while path:
            name = path[-1]
            need = next((n for n in needs[name] if n not in order), None)
            if name in order:
                path.pop()
            elif need is None:
                order.append(path.pop())
            elif need in path:
                cycle = path[path.index(need) :] + [need]
                raise ValueError(f"{need} depends on itself: {' -> '.join(cycle)}")
            else:
                path.append(need)
    return order


def _needs(name: str, formulas: Formulas, columns: Any) -> List[str]:
    needs = (source(used, name, formulas, columns) for used in formulas[name].names)
    return [title for title in needs if title is not None]


def source(used: str, name: str, formulas: Formulas, columns: Any) -> Optional[str]:
    """The new column that a formula's name stands for; None for one that is there."""
    if used in formulas and used != name:
        return used
    if used in columns:
        return None
    if used == name:
        return None if _titles.has(used, columns) else used
    others = {title: None for title in formulas if title != name or title not in columns}
    try:
        title = _titles.find(used, {**others, **dict.fromkeys(columns)})
    except KeyError as problem:
        raise KeyError(f"{name}: {problem.args[0]}") from None
    return title if title in others else None


def add_columns(
    df: Any, formulas: Formulas, order: List[str], on_error: OnError, origin: Optional[str]
) -> Any:
    """The columns of a DataFrame of pandas, computed in that order."""
    computed: Dict[str, Any] = {}
    errors: List[Tuple[str, FormulaError]] = []
    for name in order:
        sources = {used: source(used, name, formulas, df.columns) for used in formulas[name].names}
        values = {used: computed[new] for used, new in sources.items() if new is not None}
        try:
            result = formulas[name]._call(df, on_error, values)
        except FormulaError as error:
            raise _placed(error, name, df, origin) from None
        except (TypeError, ValueError) as problem:
            row = getattr(problem, "row", None)
            place = "" if row is None or origin is None else f", in {df[origin].iloc[row]}"
            raise named_error(problem, f"{name}: {problem}{place}") from None
        if on_error == "collect":
            result, found = result
            errors += ((name, _placed(error, name, df, origin)) for error in found)
        computed[name] = result
    made = _with_columns(df, {name: computed[name] for name in formulas})
    return (made, failed_rows(df, errors)) if on_error == "collect" else made


def _with_columns(df: Any, columns: Dict[str, Any]) -> Any:
    """A copy with columns replaced, and the new ones all at once, since one by one is slow."""
    import pandas

    made = df.copy()
    for name, column in columns.items():
        if name in df.columns:
            made[name] = column
    new = {name: column for name, column in columns.items() if name not in df.columns}
    if new:
        made = pandas.concat([made, pandas.DataFrame(new, index=df.index)], axis=1).__finalize__(df)
        made.columns.name = df.columns.name
    return made


def _placed(error: FormulaError, name: str, df: Any, origin: Optional[str]) -> FormulaError:
    error.column = name
    if origin is not None and error.row is not None:
        error.origin = str(df[origin].iloc[error.row])
    return error


def failed_rows(df: Any, errors: List[Tuple[str, FormulaError]]) -> Any:
    """The rows that the errors are about, with what went wrong."""
    errors = sorted(errors, key=lambda found: found[1].row or 0)
    rows = df.iloc[[error.row for _, error in errors]]
    told = {
        "error_column": [name for name, _ in errors],
        "error_number": [error.number for _, error in errors],
        "error_message": [error.message for _, error in errors],
        "error_english": [str(error.english) for _, error in errors],
        "error_position": [
            None if error.position is None else error.position.character for _, error in errors
        ],
    }
    import pandas

    return rows.assign(
        **{
            title: pandas.Series(told[title], index=rows.index, dtype=dtype)
            for title, dtype in ERROR_COLUMNS.items()
        }
    )
