"""What arrays, cells and titles rarely are."""

import decimal
import pickle

import numpy as np
import pandas
import pytest

import morandel

DOUBLE = morandel.Formula("x * 2")
LENGTH = morandel.Formula("strlen(s)")


@pytest.mark.parametrize(
    "column",
    [
        pickle.loads(pickle.dumps(np.arange(3.0))),
        pickle.loads(pickle.dumps(pandas.Series(np.arange(3.0)))),
        np.arange(3.0).astype(np.dtype("f8").newbyteorder("=")),
        np.arange(3.0).astype(np.dtype("f8", metadata={"unit": "m"})),
    ],
    ids=["array", "series", "byteorder", "metadata"],
)
def test_doubles_whose_type_is_an_object_of_its_own(column):
    assert list(DOUBLE(x=column)) == [0, 2, 4]


@pytest.mark.filterwarnings("ignore::PendingDeprecationWarning")
def test_a_matrix_is_an_array():
    assert DOUBLE(x=np.matrix([[1.0, 2.0], [3.0, 4.0]])).tolist() == [[2, 4], [6, 8]]


def test_a_category_that_no_cell_has_is_not_looked_at():
    cells = pandas.Series(pandas.Categorical(["a", "bc"], categories=["a", 1, "bc"]))
    assert LENGTH(s=cells).tolist() == [1, 2]
    cells = pandas.Series(pandas.Categorical(["a", "b", "a", 1], categories=[1, "a", "b"]))
    with pytest.raises(TypeError, match="row 3: a text is needed, not int"):
        LENGTH(s=cells)
    results, errors = LENGTH(s=cells, on_error="collect")
    assert results.tolist()[:3] == [1, 1, 1]
    assert [error.row for error in errors] == [3]


@pytest.mark.parametrize("missing", [np.float32("nan"), np.float16("nan"), decimal.Decimal("NaN")])
def test_a_missing_value_of_any_type_is_missing(missing):
    assert np.isnan(LENGTH(s=missing))
    assert np.isnan(DOUBLE(x=missing))
    results = LENGTH(s=pandas.Series([missing, "ab"], dtype=object))
    assert np.isnan(results[0]) and results[1] == 2


def test_a_name_that_two_titles_have_is_refused():
    df = pandas.DataFrame({"unit price": [1], "unit-price": [3]})
    with pytest.raises(KeyError, match="could be the column 'unit price' or 'unit-price'"):
        morandel.Formula("unit_price * 1")(df)
    df["unit_price"] = 5
    assert morandel.Formula("unit_price * 1")(df).tolist() == [5]


@pytest.mark.parametrize(
    "title, name",
    [
        (float("nan"), "nan"),
        (pandas.NA, "_NA_"),
        (pandas.NaT, "NaT"),
        (pandas.Timestamp("2026-01-02"), "_2026_01_02_00_00_00"),
        (None, "None"),
    ],
)
def test_titles_of_all_types(title, name):
    for more in ({}, {"a": [3.0]}):
        df = pandas.DataFrame({title: [1.0], **more})
        assert morandel.Formula(f"{name} * 2")(df).tolist() == [2]
        assert morandel.add(df, b=f"{name} * 2", c="b + 1").c.tolist() == [3]
        with pytest.raises(KeyError, match="no column 'other'"):
            morandel.add(df, b="other * 2")


def test_two_columns_without_a_title():
    df = pandas.DataFrame([[1.0, 2.0]], columns=[float("nan")] * 2)
    with pytest.raises(ValueError, match="nan: .*several columns nan"):
        morandel.Formula("nan + 1")(df)


def test_a_new_column_may_have_the_name_of_a_title():
    df = pandas.DataFrame({"unit price": [1, 2]})
    assert morandel.add(df, unit_price="unit_price * 2").unit_price.tolist() == [2, 4]
    with pytest.raises(ValueError, match="depends on itself"):
        morandel.add(df, cost="cost * 2")


def test_a_column_whose_title_is_a_number_is_replaced():
    df = pandas.DataFrame({2020: [1.0, 2.0], 2021: [3.0, 4.0]})
    made = morandel.add(df, {2020: "_2021 * 2"})
    assert made[2020].tolist() == [6, 8]
    assert df[2020].tolist() == [1, 2]


def test_the_kind_is_found_for_years():
    label = morandel.Formula("strcat(s, r2s(sqrt(year - 1900), 1))")
    assert label.kind == "text"
    assert list(label(s=["a"], year=[2000])) == ["a10"]
