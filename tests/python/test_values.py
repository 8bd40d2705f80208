"""What is taken for a number, a text or a missing value, alone and in a cell."""

import collections
import datetime
import decimal
import enum
import math

import numpy as np
import pandas
import pytest

import morandel

DOUBLE = morandel.Formula("x * 2")
LENGTH = morandel.Formula("strlen(s)")


def cell(value):
    """A column of that one value, as NumPy does not look into it."""
    cells = np.empty(1, dtype=object)
    cells[0] = value
    return cells


@pytest.mark.parametrize(
    "value",
    [
        np.datetime64("2020-01-01", "ns"),
        np.timedelta64(5, "ns"),
        np.complex128(1 + 2j),
        np.complex64(1),
        np.bytes_(b"12"),
        b"12",
        datetime.date(2020, 1, 1),
    ],
    ids=repr,
)
def test_what_is_neither_a_number_nor_a_text(value):
    for given in (value, np.array(value), cell(value)):
        with pytest.raises(TypeError, match="^x: "):
            DOUBLE(x=given)
        with pytest.raises(TypeError):
            LENGTH(s=given)
    results, errors = DOUBLE(x=np.append(cell(value), cell(2)), on_error="collect")
    assert math.isnan(results[0]) and results[1] == 4 and len(errors) == 1


def test_a_text_of_numpy_is_no_number():
    with pytest.raises(TypeError, match="x: row 0: a number is needed, not numpy.str_"):
        DOUBLE(x=cell(np.str_("12")))


@pytest.mark.parametrize(
    "value", [np.datetime64("NaT"), np.timedelta64("NaT"), decimal.Decimal("sNaN"), pandas.NaT], ids=repr
)
def test_what_is_missing(value):
    for given in (value, cell(value)):
        assert np.isnan(DOUBLE(x=given)).all() and np.isnan(LENGTH(s=given)).all()


def test_an_object_that_has_an_index_is_a_number():
    class Three:
        def __index__(self):
            return 3

    assert DOUBLE(x=Three()) == 6 and DOUBLE(x=cell(Three())).tolist() == [6]


def test_a_text_of_another_class_is_its_content():
    class Unit(str, enum.Enum):
        KG = "kg"

    call = morandel.Formula('strcat(s, "!")')
    assert call(s=Unit.KG) == "kg!" and call(s=[Unit.KG]).tolist() == ["kg!"]
    assert morandel.evaluate("unit", unit=Unit.KG) == "kg"


def test_lists_of_lists_are_as_lists():
    call = morandel.Formula('strcat(s, "!")')
    assert call(s=[["a", math.nan], ["b", "c"]]).tolist() == [["a!", None], ["b!", "c!"]]
    assert call(s=(("a", np.ma.masked), ["b", None])).tolist() == [["a!", None], ["b!", None]]
    with pytest.raises(TypeError, match="row 1: a text is needed, not int"):
        LENGTH(s=[["ab", 1234567], ["c", "d"]])
    with pytest.raises(TypeError, match="row 2: a text is needed, not int"):
        LENGTH(s=[np.array(["a", "b"]), [3, 4]])
    with pytest.raises(TypeError, match="x: row 2: a number is needed, not str"):
        DOUBLE(x=[[1, 2], ["3", 4]])
    assert np.isnan(DOUBLE(x=[[1, np.ma.masked], [3, 4]])).tolist() == [[False, True], [False, False]]


def test_lists_of_different_lengths_are_named():
    with pytest.raises(ValueError, match="^x: lists of different lengths"):
        DOUBLE(x=[[1, 2], [3]])
    with pytest.raises(ValueError, match="^x: lists of different lengths"):
        morandel.Formula("x")(x=[[1, 2], [3]])


@pytest.mark.parametrize("value", [b"12", bytearray(b"12")])
def test_bytes_are_no_column(value):
    with pytest.raises(TypeError, match="x: no number, text or column: byte"):
        DOUBLE(x=value)


def test_a_cell_of_the_wrong_kind_is_named():
    with pytest.raises(TypeError, match="^u: row 1: a text is needed, not int"):
        morandel.Formula("strcat(s, u)")(s=["a", "b"], u=["a", 5])


DAYS = pandas.Series(pandas.to_datetime(["2026-01-01", None]))
WRONG_COLUMNS = {
    "dates of a zone": ("xs", DAYS.dt.tz_localize("UTC")),
    "no date of a zone": ("xs", DAYS[1:].dt.tz_localize("UTC")),
    "no date": ("xs", DAYS[1:]),
    "periods": ("xs", DAYS.dt.to_period("D")),
    "intervals": ("xs", pandas.cut(pandas.Series([1, 2]), 2)),
    "texts": ("x", pandas.Series(["a", None], dtype="string")),
    "texts of NumPy": ("x", np.array(["a", "b"])),
    "categories of texts": ("x", pandas.Series(["a", None], dtype="category")),
    "categories of numbers": ("s", pandas.Series([1, 2], dtype="category")),
    "few numbers": ("s", pandas.Series([1.0, np.nan], dtype="Sparse[float]")),
    "numbers or none": ("s", pandas.Series([1, None], dtype="Int64")),
}


@pytest.mark.parametrize("on_error", ["raise", "nan", "collect"])
@pytest.mark.parametrize("what", WRONG_COLUMNS)
def test_a_whole_column_of_another_type(what, on_error):
    names, column = WRONG_COLUMNS[what]
    for name in names:
        with pytest.raises(TypeError, match=name):
            {"x": DOUBLE, "s": LENGTH}[name]({name: column}, on_error=on_error)


def test_a_column_of_another_type_that_is_all_missing_is_missing():
    for column in (
        pandas.Series([1, 2], dtype="category")[:0],
        pandas.Series([1, None], dtype="category")[1:],
        pandas.Series([None], dtype="Int64"),
        pandas.Series([np.nan], dtype="Sparse[float]"),
    ):
        assert LENGTH(s=column).isna().all()
    assert DOUBLE(x=pandas.Series([None], dtype="string")).isna().all()
    assert DOUBLE(x=pandas.Series(["a", None], dtype="category")[1:]).isna().all()


def test_few_numbers():
    assert DOUBLE(x=pandas.Series([1.0, np.nan], dtype="Sparse[float]")).tolist()[:1] == [2]


def test_a_column_is_called_by_its_own_type():
    with pytest.raises(TypeError, match="a column of Int64 was given"):
        LENGTH(s=pandas.Series([1, None], dtype="Int64"))


@pytest.mark.parametrize(
    "texts",
    [
        pandas.Index(["a", None]),
        pandas.Categorical(["a", None]),
        pandas.CategoricalIndex(["a", None]),
        pandas.array(["a", None], dtype="string"),
        pandas.Series(pandas.Categorical(["a", None], categories=[1, "a"])),
        collections.deque(["a", None]),
        {1: "a", 2: None}.values(),
        np.array([["a", None]], dtype=object),
    ],
    ids=lambda texts: type(texts).__name__,
)
def test_a_name_alone_takes_what_other_formulas_take(texts):
    for text in ("item", 'strcat(item, "")'):
        assert np.ravel(morandel.Formula(text)(item=texts)).tolist() == ["a", None]


def test_a_name_alone_takes_numbers_of_all_columns():
    for numbers in (
        pandas.Index([1, 2]),
        pandas.Categorical([1, 2]),
        pandas.array([1, 2], dtype="Int64"),
        pandas.Series([1, 2], dtype="Sparse[int]"),
        collections.deque([1, 2]),
    ):
        assert morandel.Formula("item")(item=numbers).tolist() == [1, 2]
    with pytest.raises(TypeError, match="item: neither numbers nor texts"):
        morandel.Formula("item")(item=pandas.DatetimeIndex(["2026-01-01"]))
