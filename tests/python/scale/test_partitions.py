"""Partitions that another process computes, and what is said of columns before."""

import dask.dataframe
import pandas
import pytest
from distributed import Client

import morandel


def of_dask(columns):
    return dask.dataframe.from_pandas(pandas.DataFrame(columns), npartitions=2)


def test_columns_that_were_unpickled():
    made = of_dask({"x": [1.0, 2.0, 4.0]}).pipe(morandel.add, y="x * 2")
    assert made.compute(scheduler="processes").y.tolist() == [2, 4, 8]


def test_a_client_in_this_process():
    shares = of_dask({"x": [1.0, 0.0]}).pipe(morandel.add, y="1 / x", on_error="nan")
    with Client(processes=False, n_workers=1, dashboard_address=None):
        assert shares.compute().y.isna().tolist() == [False, True]
        with pytest.raises(morandel.FormulaError, match="of partition 1"):
            of_dask({"x": [1.0, 0.0]}).pipe(morandel.add, y="1 / x").compute()


def test_a_name_alone_is_what_its_column_is():
    columns = of_dask({"s": ["a", "b"], "n": [1, 2], "c": pandas.Categorical([3, 4])})
    made = columns.pipe(morandel.add, text="s", number="n", category="c", again="text")
    assert [str(made.dtypes[name]) for name in ("text", "number", "category", "again")] == [
        "object", "float64", "float64", "object"]
    assert made.text.str.upper().compute().tolist() == ["A", "B"]
    assert made.again.compute().tolist() == ["a", "b"]


def test_a_partition_without_texts():
    columns = of_dask({"s": ["a", None]})
    for on_error in ("nan", "collect"):
        made = columns.pipe(morandel.add, t="s", again="t", on_error=on_error)
        last = (made[0] if on_error == "collect" else made).partitions[1].compute()
        assert last.t.dtype == last.again.dtype == object
        assert last.t.tolist() == last.again.tolist() == [None]


def test_titles_that_are_no_texts():
    made = of_dask({1: [1.0, 2.0]}).pipe(morandel.add, {3: "_1 * 2"})
    assert made.compute()[3].tolist() == [2, 4]
