"""Arrays, lists and Series: shapes, strides, missing values, rows that fail, the lock."""

import math
import resource
import subprocess
import sys
import threading

import numpy as np
import pandas
import pytest

import morandel

TOTAL = morandel.Formula("price * qty")
LABEL = morandel.Formula('strcat(name, ":", r2s(price, 2))')


def same(found, wanted):
    np.testing.assert_array_equal(found, np.asarray(wanted, dtype=found.dtype))


def test_arrays_lists_and_scalars():
    same(TOTAL(price=np.array([1.5, 2]), qty=[2, 3]), [3, 6])
    same(TOTAL(price=2.5, qty=range(3)), [0, 2.5, 5])
    same(TOTAL(price=(1, 2), qty=np.float32(2)), [2, 4])
    assert TOTAL(price=[1], qty=2).dtype == np.float64
    assert TOTAL(price=[], qty=2).shape == (0,)
    same(LABEL(name=["a", "b"], price=1.5), ["a:1.5", "b:1.5"])
    assert LABEL(name=np.array(["a", "苹果"]), price=[1, 2]).tolist() == ["a:1", "苹果:2"]


def test_shapes_are_put_together():
    rows, columns = np.arange(3.0).reshape(3, 1), np.arange(4.0)
    same(morandel.Formula("a * 10 + b")(a=rows, b=columns), rows * 10 + columns)
    same(TOTAL(price=np.ones((2, 3)).T, qty=np.ones((3, 2))), np.ones((3, 2)))
    names = np.array([["a"], ["b"]], dtype=object)
    assert LABEL(name=names, price=[1, 2]).tolist() == [["a:1", "a:2"], ["b:1", "b:2"]]
    with pytest.raises(ValueError):
        TOTAL(price=[1, 2], qty=[1, 2, 3])


@pytest.mark.parametrize("dtype", ["i1", "u2", "i8", "f4", "?", ">f8", "O"])
def test_numbers_of_all_types(dtype):
    values = np.array([0, 1, 1], dtype=dtype)
    same(morandel.Formula("x + 1")(x=values), [1, 2, 2])


def test_doubles_are_taken_where_they_lie():
    wide = np.arange(40_000.0).reshape(20_000, 2)
    same(morandel.Formula("x + 1")(x=wide[:, 1]), wide[:, 1] + 1)
    same(morandel.Formula("x + 1")(x=wide[::-2, 0]), wide[::-2, 0] + 1)
    same(morandel.Formula("x + 1")(x=np.broadcast_to(np.float64(2), 5)), np.full(5, 3.0))
    unaligned = np.frombuffer(b"." + wide[:, 0].tobytes(), dtype="u1")[1:].view("f8")
    same(morandel.Formula("x + 1")(x=unaligned), wide[:, 0] + 1)
    from morandel._values import column_of

    for array in (wide[:, 1], wide[:, 0].copy(), np.broadcast_to(np.float64(2), 5)):
        assert np.shares_memory(column_of("x", array, "number").source, array)
    frame = pandas.DataFrame(wide)
    assert np.shares_memory(column_of("x", frame[1], "number").source, frame[1].to_numpy())


def test_the_same_bits_as_row_by_row():
    random = np.random.default_rng(1)
    a, b = random.normal(size=50_000) * 1e3, random.normal(size=50_000)
    for text in ["(a + b) * a - b / 3", "preci(a * b, 2)", "sqrt(a * a) + b ^ 2", "mod(a, 7) + sin(b)"]:
        f = morandel.Formula(text)
        by_columns = f(a=a, b=b)
        for row in [0, 1, 16383, 16384, 16385, 49_999]:
            assert by_columns[row] == f(a=a[row], b=b[row]), (text, row)


@pytest.mark.parametrize("rows", [1, 16_383, 16_384, 16_385, 40_000])
def test_missing_numbers_stay_missing(rows):
    price, qty = np.arange(rows, dtype=float), np.full(rows, 2.0)
    price[::7] = np.nan
    qty[1::5] = np.nan
    same(TOTAL(price=price, qty=qty), price * qty)
    same(TOTAL(price=price[::-1], qty=qty), price[::-1] * qty)


def test_missing_texts_stay_missing():
    names = ["a", None, math.nan, pandas.NA, "e", "f"]
    prices = [1, 2, 3, 4, None, 6]
    assert LABEL(name=names, price=prices).tolist() == ["a:1", None, None, None, None, "f:6"]
    same(morandel.Formula("strlen(s)")(s=["苹果", None, ""]), [4, np.nan, 0])
    same(TOTAL(price=[1, None], qty=None), [np.nan, np.nan])
    assert LABEL(name=None, price=[1, 2]).tolist() == [None, None]
    assert LABEL(name=np.full(2, np.nan), price=1).tolist() == [None, None]


def test_what_is_masked_is_missing():
    twice, length = morandel.Formula("a * 2"), morandel.Formula("strlen(s)")
    masked = np.ma.masked
    same(twice(a=np.ma.array([1, 2], mask=[0, 1])), [2, np.nan])
    same(twice(a=np.ma.array([[1.0], [2.0]], mask=[[1], [0]])), [[np.nan], [4]])
    same(twice(a=np.ma.array([1, 2])), [2, 4])
    same(twice(a=[1, masked]), [2, np.nan])
    same(twice(a=np.array([1, masked], dtype=object)), [2, np.nan])
    same(twice(a=[np.ma.array([1, 2], mask=[0, 1]), np.ma.array([3, 4])]), [[2, np.nan], [6, 8]])
    same(length(s=np.ma.array(["ab", "c"], mask=[0, 1])), [2, np.nan])
    same(length(s=np.ma.array(["ab", "c"], mask=[1, 0], dtype=object)), [np.nan, 1])
    assert math.isnan(twice(a=masked)) and math.isnan(length(s=masked))
    same(morandel.Formula("a")(a=np.ma.array([1, 2], mask=[0, 1])), [1, np.nan])
    assert morandel.Formula("a")(a=np.ma.array(["x", "y"], mask=[1, 0])).tolist() == [None, "y"]
    assert math.isnan(morandel.evaluate("a", a=masked))


def test_a_row_that_fails():
    share = morandel.Formula("total / count")
    count = np.ones(40_000)
    count[[5, 20_000, 20_001]] = 0
    with pytest.raises(morandel.FormulaError) as caught:
        share(total=1, count=count)
    assert (caught.value.row, caught.value.number) == (5, 3)
    assert caught.value.position.character == 6
    results = share(total=1, count=count, on_error="nan")
    assert np.flatnonzero(np.isnan(results)).tolist() == [5, 20_000, 20_001]
    results, errors = share(total=1, count=count, on_error="collect")
    assert [error.row for error in errors] == [5, 20_000, 20_001]
    assert results[6] == 1
    count[2] = np.nan
    results, errors = share(total=1, count=count, on_error="collect")
    assert [error.row for error in errors] == [5, 20_000, 20_001]
    assert np.isnan(results[2])


def test_a_text_that_fails():
    names = ["a", "b😀", None, "d\udc80"]
    results, errors = LABEL(name=names, price=1, on_error="collect")
    assert results.tolist() == ["a:1", None, None, None]
    assert [(error.row, error.name) for error in errors] == [(1, "name"), (3, "name")]
    with pytest.raises(morandel.FormulaError, match="row 1"):
        LABEL(name=names, price=1)


def test_values_of_the_other_kind_are_refused():
    with pytest.raises(TypeError, match="^name: row 1: a text is needed, not int"):
        LABEL(name=["a", 5], price=1)
    with pytest.raises(TypeError, match="price: row 1: a number is needed, not str"):
        TOTAL(price=[1, "2"], qty=1)
    with pytest.raises(TypeError, match="takes name for a text, and a column of int64"):
        LABEL(name=np.arange(2), price=1)
    with pytest.raises(TypeError, match="neither numbers nor texts"):
        TOTAL(price=np.array(["2026-01-01"], dtype="M8[D]"), qty=1)
    with pytest.raises(TypeError, match="neither numbers nor texts"):
        LABEL(name=np.array([b"a"]), price=1)


def test_a_value_of_the_other_kind_is_a_failure_of_its_row():
    twice = morandel.Formula("a * 2")
    mixed = [1, "x", None, 10**400, 5]
    same(twice(a=mixed, on_error="nan"), [2, np.nan, np.nan, np.nan, 10])
    results, errors = twice(a=mixed, on_error="collect")
    assert [(error.row, error.name, error.reason) for error in errors] == [(1, "a", 22), (3, "a", 22)]
    assert str(errors[0]) == "a: 'x' is not a number, row 1" and errors[0].message == "a：'x' 不是数值"
    assert len(str(errors[1])) < 100
    results, errors = LABEL(name=["a", 5, None], price=[1, "2", "x"], on_error="collect")
    assert results.tolist() == ["a:1", None, None]
    assert [str(error) for error in errors] == [
        "name: 5 is not a text, row 1", "price: 'x' is not a number, row 2"]
    results, errors = morandel.Formula("1 / a")(a=["x", 0, 2, "y"], on_error="collect")
    assert [(error.row, error.number) for error in errors] == [(0, -1), (1, 3), (3, -1)]
    # A row that is spread over a shape fails in all of it.
    a = np.array([["x"], [1]], dtype=object)
    results, errors = morandel.Formula("a + b")(a=a, b=[10, 20], on_error="collect")
    assert results.shape == (2, 2) and [error.row for error in errors] == [0, 1]
    for values, formula, wrong in ((["p", 7, "p"], LABEL, [1]), ([1, "x", "x"], twice, [1, 2])):
        column = pandas.Series(values, dtype="category")
        results, errors = formula({"name": column, "a": column, "price": 1}, on_error="collect")
        assert [error.row for error in errors] == wrong
        assert results.isna().tolist() == [row in wrong for row in range(3)]


def test_numbers_that_are_too_large():
    with pytest.raises(ValueError, match="^price: the number is too large"):
        TOTAL(price=10**400, qty=1)
    with pytest.raises(ValueError, match="^price: row 1: the number is too large"):
        TOTAL(price=[1, 10**400], qty=1)


@pytest.mark.parametrize(
    "prepare",
    [
        "v = np.full(3_000_000, 1.5)\nf = morandel.Formula('+'.join(['sin(x)^x'] * 50))",
        "v = ['abc'] * 4_000_000\nf = morandel.Formula('+'.join(['strlen(x)'] * 50))",
        "v = ['abc'] * 4_000_000\nf = morandel.Formula('strcat(' * 50 + 'x' + ',x)' * 50)",
    ],
)
def test_a_computation_can_be_interrupted(prepare):
    """By a process of its own, since a signal that comes late would end the tests."""
    program = f"""
import os, signal, threading, time
import numpy as np, morandel
{prepare}
v = np.array(v)if f.names["x"] == "number" else np.array(v, dtype=object)
def interrupt():
    sent.append(time.process_time())
    os.kill(os.getpid(), signal.SIGINT)
sent = []
threading.Timer(0.3, interrupt).start()
try:
    f(x=v)
    print("whole")
except KeyboardInterrupt:
    print("late" if time.process_time() - sent[0] > 1 else "ended")
"""
    done = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, timeout=120)
    assert done.stdout == "ended\n", done.stderr


def test_a_formula_that_is_a_name():
    f = morandel.Formula("item")
    assert f(item=["a", "b"]).tolist() == ["a", "b"]
    assert f(item=[None, "b"]).tolist() == [None, "b"]
    same(f(item=[1, 2]), [1, 2])
    assert f(item=pandas.Series(["a"], dtype="category")).tolist() == ["a"]
    assert f(item=pandas.Series(["a"], dtype="string")).tolist() == ["a"]


def test_results_are_objects_of_their_own():
    texts = LABEL(name=["苹果"] * 20_000, price=1)
    assert all(text == "苹果:1" for text in texts)
    before = sys.getrefcount(None)
    for _ in range(50):
        LABEL(name=[None] * 1000, price=1)
    assert sys.getrefcount(None) - before < 1000


def test_other_threads_go_on_while_columns_are_computed():
    values = np.random.default_rng(1).uniform(1, 2, 2_000_000)
    f = morandel.Formula("sin(x) ^ x + ln(x) * x ^ 1.7")
    started = threading.Event()
    results = []

    def compute():
        started.set()
        results.append(f(x=values))

    interval = sys.getswitchinterval()
    sys.setswitchinterval(0.5)  # nobody is asked to let go of the lock before
    try:
        thread = threading.Thread(target=compute)
        thread.start()
        started.wait()
        turns = 0
        while not results and thread.is_alive():
            turns += 1
    finally:
        sys.setswitchinterval(interval)
        thread.join()
    assert turns > 100
    assert len(results[0]) == 2_000_000


def test_two_threads_do_not_wait_for_one_another():
    """How often each had to wait, which does not depend on what else the machine does."""
    values = np.random.default_rng(1).uniform(1, 2, 3_000_000)
    f = morandel.Formula("sin(x) ^ x + ln(x) * x ^ 1.7")
    waits = []
    both = threading.Barrier(2)

    def compute():
        before = resource.getrusage(resource.RUSAGE_THREAD).ru_nvcsw
        both.wait()  # here it would wait for the lock, and look again each 5 ms
        f(x=values)
        waits.append(resource.getrusage(resource.RUSAGE_THREAD).ru_nvcsw - before)

    threads = [threading.Thread(target=compute) for _ in range(2)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert len(waits) == 2 and max(waits) <= 8, waits
