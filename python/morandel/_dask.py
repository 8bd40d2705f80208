"""New columns of a DataFrame of Dask: the partitions go through what pandas goes through."""

from __future__ import annotations

from typing import Any, Dict, List, Optional, Tuple

from . import _titles, _values
from ._errors import FormulaError, named_error
from ._formula import OnError
from ._frames import ERROR_COLUMNS, Formulas, add_columns, source


def add(
    df: Any, formulas: Formulas, order: List[str], on_error: OnError, origin: Optional[str]
) -> Any:
    texts = [name for name in formulas if _gives_text(name, formulas, df)]
    meta = _meta(df, formulas, texts)
    if on_error != "collect":
        return df.map_partitions(_add_to_part, formulas, order, on_error, origin, texts, meta=meta)
    import dask
    import dask.dataframe

    both = [
        dask.delayed(_add_and_collect, nout=2, pure=True)(part, formulas, order, origin, texts)
        for part in df.to_delayed()
    ]
    made, errors = zip(*both)
    return (
        dask.dataframe.from_delayed(list(made), meta=meta, divisions=df.divisions, verify_meta=False),
        dask.dataframe.from_delayed(list(errors), meta=_error_meta(df._meta), verify_meta=False),
    )


def _add_to_part(
    df: Any,
    formulas: Formulas,
    order: List[str],
    on_error: OnError,
    origin: Optional[str],
    texts: List[str],
    partition_info: Any = None,
) -> Any:
    """Errors tell the partition where no column tells more."""
    # A client in one process hands it over in a wrapping, which has it as its data.
    info = getattr(partition_info, "data", partition_info)
    number = info.get("number") if isinstance(info, dict) else None
    try:
        return _with_texts(add_columns(df, formulas, order, on_error, origin), texts)
    except FormulaError as error:
        if error.origin is None and number is not None:
            error.origin = f"partition {number}"
        raise
    except (TypeError, ValueError) as problem:
        if number is None:
            raise
        raise named_error(problem, f"partition {number}: {problem}") from None


def _add_and_collect(
    df: Any, formulas: Formulas, order: List[str], origin: Optional[str], texts: List[str]
) -> Tuple[Any, Any]:
    made, errors = add_columns(df, formulas, order, "collect", origin)
    return _with_texts(made, texts), errors


def _with_texts(made: Any, texts: List[str]) -> Any:
    """A column that is another's may have no text in a partition, and is of texts all the same."""
    for name in texts:
        if made[name].dtype != object:
            made[name] = made[name].astype(object).where(made[name].notna(), None)
    return made


def _meta(df: Any, formulas: Formulas, texts: List[str]) -> Any:
    import pandas

    meta = df._meta.copy()
    for name in formulas:
        meta[name] = pandas.Series([], dtype="object" if name in texts else "float64")
    return meta


def _gives_text(name: str, formulas: Formulas, df: Any) -> bool:
    """What is a name alone is what its column is."""
    formula = formulas[name]
    if not formula._is_alone():
        return formula.kind == "text"
    used = next(iter(formula.names))
    new = source(used, name, formulas, df.columns)
    if new is not None:
        return _gives_text(new, formulas, df)
    sample = df._meta_nonempty[_titles.find(used, df.columns)]
    return _values.column_of(used, sample, None, True).kind == _values.TEXT


def _error_meta(meta: Any) -> Any:
    import pandas

    columns: Dict[str, Any] = {
        title: pandas.Series([], dtype=dtype) for title, dtype in ERROR_COLUMNS.items()
    }
    return meta.assign(**columns)
