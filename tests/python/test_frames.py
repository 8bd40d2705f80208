"""DataFrames: columns by titles, all types that texts and numbers come in, add."""

import numpy as np
import pandas
import pandas.testing
import pytest

import morandel

TOTAL = morandel.Formula("price * qty")
LABEL = morandel.Formula('strcat(name, ":", r2s(price, 2))')


def test_a_frame_gives_a_series_with_its_index(frame):
    frame.index = ["x", "y", "z"]
    result = TOTAL(frame)
    assert isinstance(result, pandas.Series)
    assert result.to_dict() == {"x": 37.5, "y": 20, "z": 4}
    assert LABEL(frame).tolist() == ["苹果:12.5", "梨:2", None]
    assert TOTAL(frame, qty=2).tolist() == [25, 4, 2]
    assert morandel.Formula("1 + 1")(frame).tolist() == [2, 2, 2]
    assert TOTAL(frame.iloc[:0]).shape == (0,)
    assert LABEL(frame.iloc[:0]).dtype == object


def test_series_go_by_their_index(frame):
    result = TOTAL(price=frame.price, qty=[1, 2, 3])
    pandas.testing.assert_index_equal(result.index, frame.index)
    with pytest.raises(ValueError, match="different indexes"):
        TOTAL(price=frame.price, qty=frame.qty.rename({0: 7}))


@pytest.mark.parametrize("dtype", ["object", "string", "category"])
def test_columns_of_texts(frame, dtype):
    frame["name"] = frame["name"].astype(dtype)
    assert LABEL(frame).tolist() == ["苹果:12.5", "梨:2", None]
    assert LABEL(frame[::-1]).tolist() == [None, "梨:2", "苹果:12.5"]


@pytest.mark.parametrize("dtype", ["Int64", "Float64", "category", "object"])
def test_columns_of_numbers(frame, dtype):
    frame["qty"] = pandas.Series([3, None, 4], dtype=dtype)
    np.testing.assert_array_equal(TOTAL(frame), [37.5, np.nan, 4])


def test_columns_of_truths(frame):
    frame["is_big"] = frame.price > 2
    assert morandel.Formula("if(is_big, price, 0)")(frame).tolist() == [12.5, 0, 0]


def test_a_category_without_texts(frame):
    frame["name"] = pandas.Series([None] * 3, dtype="category")
    assert LABEL(frame).tolist() == [None, None, None]
    frame["price"] = pandas.Series(["a", "b", "a"], dtype="category")
    with pytest.raises(TypeError, match="price: row 0: a number is needed, not str"):
        TOTAL(frame)


def test_titles_that_are_no_names():
    frame = pandas.DataFrame({"unit price": [2.0], "2nd": [3.0], "left": [4.0], "单价": [5.0]})
    assert morandel.Formula("unit_price + _2nd + _left + 单价")(frame).tolist() == [14]
    with pytest.raises(KeyError, match="no column 'unit_prise'; did you mean unit price"):
        morandel.Formula("unit_prise")(frame)


def test_errors_tell_row_and_label(frame):
    frame.index = ["x", "y", "z"]
    with pytest.raises(morandel.FormulaError) as caught:
        morandel.Formula("1 / (qty - 10)")(frame)
    assert (caught.value.row, caught.value.label) == (1, "y")
    assert "row 1 (index 'y')" in str(caught.value)


@pytest.mark.parametrize(
    "label, shown", [(pandas.NA, "<NA>"), (True, "True"), (2, "2"), (1, None), (np.int64(1), None)]
)
def test_labels_of_all_types_are_shown(label, shown):
    frame = pandas.DataFrame({"a": [1.0, 0.0]}, index=pandas.Index(["first", label], dtype=object))
    with pytest.raises(morandel.FormulaError) as caught:
        morandel.Formula("1 / a")(frame)
    assert str(caught.value).endswith("row 1" if shown is None else f"row 1 (index {shown})")


def test_values_are_spread_to_the_index(frame):
    made = morandel.Formula("b + 0")(frame, b=[5])
    assert made.tolist() == [5, 5, 5] and made.index.equals(frame.index)
    assert morandel.Formula("b + 0")(frame[:0], b=[5]).tolist() == []
    assert morandel.Formula("a + b")(a=frame.qty, b=[1]).tolist() == [4, 11, 5]
    for b in ([1, 2, 3], [[1, 2], [3, 4]], [[1]]):
        with pytest.raises(ValueError, match="^b: values of the shape .*, and the index has"):
            morandel.Formula("a + b")(a=pandas.Series([1.0, 2.0]), b=b)
    with pytest.raises(ValueError, match="^b: values of the shape"):
        morandel.Formula("a + b")(a=pandas.Series([1.0]), b=[1, 2, 3])


def test_add_in_any_order(frame):
    made = frame.pipe(
        morandel.add, code='strcat(name, r2s(total, 1))', gross="total * 1.5", total="price * qty"
    )
    assert list(made) == ["name", "price", "qty", "code", "gross", "total"]
    assert made.gross.tolist() == [56.25, 30, 6]
    assert made.code.tolist() == ["苹果37.5", "梨20", None]
    assert list(frame) == ["name", "price", "qty"]


def test_add_takes_titles_and_formulas(frame):
    made = morandel.add(frame, {"in all": TOTAL}, twice="in_all * 2" if False else "price * 2")
    assert made["in all"].tolist() == [37.5, 20, 4]
    assert made.twice.tolist() == [25, 4, 2]


def test_what_a_frame_has_besides_its_columns_stays():
    class Table(pandas.DataFrame):
        _metadata = ["unit"]

        @property
        def _constructor(self):
            return Table

    frame = Table({"a": [1.0]})
    frame.columns.name, frame.attrs["from"], frame.unit = "titles", "there", "m"
    made = morandel.add(frame, b="a + 1")
    assert type(made) is Table and made.unit == "m"
    assert made.columns.name == "titles" and made.attrs == {"from": "there"}
    assert list(frame) == ["a"]


def test_a_formula_of_its_own_name_means_the_column_before(frame):
    made = morandel.add(frame, total="price * qty", price="price + 1")
    assert made.price.tolist() == [13.5, 3, 2]
    assert made.total.tolist() == [40.5, 30, 8]
    assert list(made) == ["name", "price", "qty", "total"]


def test_cycles_are_named(frame):
    with pytest.raises(ValueError, match="a depends on itself: a -> b -> c -> a"):
        morandel.add(frame, a="b + 1", b="c + 1", c="a + 1")
    with pytest.raises(ValueError, match="new depends on itself: new -> new"):
        morandel.add(frame, new="new + 1")


def test_long_chains(frame):
    formulas = {f"c{i}": f"c{i + 1} + 1" for i in range(3000)}
    made = morandel.add(frame, formulas, c3000="qty")
    assert made.c0.tolist() == [3003, 3010, 3004]


def test_what_cannot_be_added(frame):
    with pytest.raises(KeyError, match="total: there is no column 'prise'; did you mean price"):
        morandel.add(frame, total="prise * 2")
    with pytest.raises(morandel.FormulaError) as caught:
        morandel.add(frame, total="price *")
    assert caught.value.column == "total"
    with pytest.raises(TypeError, match="total: the formula takes name for a number|total: name: row 0"):
        morandel.add(frame, total="name * 2")


def test_errors_of_new_columns(frame):
    with pytest.raises(morandel.FormulaError, match=r"share: division by zero.*row 0 of 苹果"):
        morandel.add(frame, share="1 / (qty - 3)", origin="name")
    made = morandel.add(frame, share="1 / (qty - 3)", twice="share * 2", on_error="nan")
    np.testing.assert_array_equal(made.twice, [np.nan, 2 / 7, 2])
    made, errors = morandel.add(
        frame, twice="share * 2", share="1 / (qty - 3)", root="sqrt(qty - 4)", on_error="collect"
    )
    assert made.share.isna().tolist() == [True, False, False]
    assert errors.error_column.tolist() == ["share", "root"]
    assert errors.name.tolist() == ["苹果", "苹果"]
    assert errors.error_number.tolist()[0] == 3
    assert errors.error_position.tolist()[0] == 2
    made, errors = morandel.add(frame, twice="qty * 2", on_error="collect")
    assert len(errors) == 0 and list(errors)[-1] == "error_position"


def test_a_cell_of_the_other_kind_is_told_with_its_origin():
    frame = pandas.DataFrame({"a": [1, "x"], "s": ["u", 5], "path": ["one.csv", "two.csv"]})
    for formula in ("a * 2", "strlen(s)"):
        with pytest.raises(TypeError, match="^b: .: row 1: .*, in two.csv$"):
            morandel.add(frame, b=formula, origin="path")
    with pytest.raises(TypeError, match="not str$"):
        morandel.add(frame, b="a * 2")


def test_a_cell_of_the_other_kind_is_a_failure_of_its_row():
    frame = pandas.DataFrame({"a": [1, "x", None]}, index=["p", "q", "r"])
    made, errors = morandel.add(frame, b="a * 2", on_error="collect")
    np.testing.assert_array_equal(made.b, [2, np.nan, np.nan])
    assert errors.index.tolist() == ["q"] and errors.a.tolist() == ["x"]
    assert errors.error_english.tolist() == ["a: 'x' is not a number"]
    assert errors.error_column.tolist() == ["b"]
    assert morandel.add(frame, b="a * 2", on_error="nan").b.isna().tolist() == [False, True, True]
    with pytest.raises(TypeError, match="^b: a: row 1: a number is needed, not str"):
        morandel.add(frame, b="a * 2")


def test_new_columns_whose_titles_are_no_names():
    frame = pandas.DataFrame({"a": [1.0]})
    made = morandel.add(frame, {"x y": "a + 1", "z": "x_y * 2"})
    assert made["x y"].tolist() == [2] and made.z.tolist() == [4]
    made = morandel.add(made, {"x y": "x_y + 10", "w": "x_y"})
    assert made["x y"].tolist() == [12] and made.w.tolist() == [12]
    with pytest.raises(ValueError, match="x y depends on itself"):
        morandel.add(frame, {"x y": "x_y + 1"})
    assert morandel.add(frame, {"on_error": "a", "b": "on_error + 1"}).b.tolist() == [2]


def test_columns_of_errors_do_not_replace_others(frame):
    frame["error_number"] = 7
    with pytest.raises(ValueError, match="'error_number' would be lost"):
        morandel.add(frame, share="1 / (qty - 3)", on_error="collect")
    assert morandel.add(frame, b="error_number + 1").b.tolist() == [8, 8, 8]


@pytest.mark.parametrize(
    "call, kind, message",
    [
        (lambda df: morandel.Formula(None), TypeError, "text: a formula is a str, not NoneType"),
        (lambda df: morandel.check(3), TypeError, "text: a formula is a str, not int"),
        (lambda df: morandel.evaluate(b"1"), TypeError, "text: a formula is a str, not bytes"),
        (lambda df: morandel.add(df, b=3), TypeError, "b: a formula is a str or a Formula, not int"),
        (lambda df: morandel.add(df, [1]), TypeError, "formulas: a mapping by title, not list"),
        (lambda df: morandel.add([1], b="a"), TypeError, "df: a DataFrame of pandas or Dask, not list"),
        (lambda df: TOTAL(1), TypeError, "values: a mapping or a DataFrame, not int"),
        (lambda df: TOTAL([1]), TypeError, "values: a mapping or a DataFrame, not list"),
        (lambda df: TOTAL(price=df, qty=1), TypeError, "price: a DataFrame was given"),
        (lambda df: TOTAL(price=1j, qty=1), TypeError, "price: no number, text or column: complex"),
        (lambda df: TOTAL(price={}, qty=1), TypeError, "price: no number, text or column: dict"),
        (lambda df: TOTAL(df[["price", "qty", "qty"]]), ValueError, "qty: .*several columns 'qty'"),
        (lambda df: morandel.add(df[["price", "price"]], b="price"), ValueError, "b: price: .*several"),
        (lambda df: TOTAL(pandas.concat({"x": df}, axis=1)), ValueError, "df: .*several levels"),
        (lambda df: morandel.add(pandas.concat({"x": df}, axis=1), b="x"), ValueError, "several levels"),
        (lambda df: morandel.add(df, b="qty", origin="file"), KeyError, "origin: .*'file'"),
    ],
)
def test_arguments_of_the_wrong_kind_are_named(frame, call, kind, message):
    with pytest.raises(kind, match=message):
        call(frame)


def test_frames_of_dask(frame):
    dask_frame = pytest.importorskip("dask.dataframe")
    table = dask_frame.from_pandas(frame, npartitions=3)
    with pytest.raises(TypeError, match="values: morandel.add takes a DataFrame of Dask"):
        TOTAL(table)
    with pytest.raises(TypeError, match="price: morandel.add takes what is of Dask"):
        TOTAL(price=table.price, qty=1)
    with pytest.raises(morandel.FormulaError, match=r"row 0 \(index 1\) of partition 1"):
        morandel.add(table, b="1 / (qty - 10)").compute(scheduler="sync")
    with pytest.raises(morandel.FormulaError, match="row 0 .*of 梨"):
        morandel.add(table, b="1 / (qty - 10)", origin="name").compute(scheduler="sync")
    assert morandel.add(table, {"x y": "qty", "z": "x_y"}).compute(scheduler="sync").z.tolist() == [3, 10, 4]


def test_labels_that_attributes_of_other_classes_have():
    series = pandas.Series([1.0, 2.0], index=["columns", "map_partitions"])
    assert morandel.Formula("a * 2")(a=series).tolist() == [2, 4]
    assert morandel.Formula("columns * 2")(series) == 2
    frame = pandas.DataFrame({"map_partitions": [1.0], "columns": [2.0], "dtype": [3.0], "array": [4.0]})
    frame.index = ["columns"]
    assert morandel.Formula("columns + map_partitions + dtype")(frame).tolist() == [6]
    assert morandel.add(frame, b="columns + array").b.tolist() == [6]
    with pytest.raises(TypeError, match="a: a DataFrame was given"):
        morandel.Formula("a")(a=frame.assign(index=1))
