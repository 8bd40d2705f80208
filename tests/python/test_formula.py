"""Formulas, their names and kinds, single values, errors, the checker, pickling."""

import copy
import decimal
import math
import pickle
import sqlite3
import typing
import weakref

import numpy as np
import pandas
import pytest

import morandel


def test_evaluates_at_once():
    assert morandel.evaluate("preci(price * qty, 2)", price=2.675, qty=3) == 8.03
    assert morandel.evaluate('strcat(name, "·", r2s(price, 2))', name="苹果", price=12.5) == "苹果·12.5"
    assert morandel.evaluate("1 + 1") == 2


def test_results_have_the_type_of_the_formula():
    assert type(morandel.evaluate("a / 2", a=4)) is float
    assert type(morandel.evaluate("int(a)", a=4)) is int
    assert type(morandel.evaluate("r2s(a, 1)", a=4)) is str
    assert morandel.evaluate("int(a)", a=-math.inf) == -math.inf


@pytest.mark.parametrize(
    "value", [3, 3.0, True + 2, np.int16(3), np.float32(3), decimal.Decimal(3), np.array(3)]
)
def test_numbers_of_all_types(value):
    assert morandel.evaluate("x * 2", x=value) == 6


def test_names_and_kinds():
    f = morandel.Formula('strcat(name, "·", r2s(price, 2))')
    assert f.names == {"name": "text", "price": "number"}
    assert f.kind == "text"
    assert list(morandel.Formula("b + a * b").names) == ["b", "a"]
    assert morandel.Formula("strlen(价格名)").names == {"价格名": "text"}
    assert morandel.Formula("strlen(s)").kind == "number"


@pytest.mark.parametrize(
    "text, kind",
    [
        ("strsub(s, 12, 20)", "text"),
        ("1 / (a - 1)", "number"),
        ("sqrt(a - 50)", "number"),
        ("strsubn(s, \",\", 1)", "text"),
        ("if(a, 1, 2)", "number"),
    ],
)
def test_what_a_formula_gives_is_known_before_there_are_values(text, kind):
    assert morandel.Formula(text).kind == kind


def test_values_by_mapping_and_by_name():
    f = morandel.Formula("a - b")
    assert f({"a": 5, "b": 3}) == 2
    assert f({"a": 5, "b": 3}, b=1) == 4
    with pytest.raises(TypeError, match="no value for b"):
        f(a=1)
    with pytest.raises(TypeError, match="no value for b"):
        f({"a": 1})
    assert f(a=1, b=2, other="not used") == -1


def test_values_of_a_row_of_sqlite():
    connection = sqlite3.connect(":memory:")
    connection.row_factory = sqlite3.Row
    row = connection.execute("select 2.5 as price, 2 as qty").fetchone()
    connection.close()
    assert morandel.evaluate("price * qty", row) == 5
    with pytest.raises(TypeError, match="no value for rate"):
        morandel.evaluate("price * rate", row)


def test_a_name_that_is_a_keyword_of_the_call():
    assert morandel.Formula("on_error + 1")({"on_error": 1}) == 2
    assert morandel.Formula("self + values")(self=1, values=2) == 3


def test_values_of_the_other_kind_are_refused():
    with pytest.raises(TypeError, match="takes s for a text, and a number was given"):
        morandel.evaluate("strlen(s)", s=5)
    with pytest.raises(TypeError, match="takes x for a number, and a text was given"):
        morandel.evaluate("x + 1", x="5")
    with pytest.raises(TypeError, match="x: no number, text or column: object"):
        morandel.evaluate("x + 1", x=object())


def test_kinds_can_be_told():
    f = morandel.Formula("item", kinds={"item": "text"})
    assert f.names == {"item": "text"}
    assert f(item="a") == "a"
    assert morandel.evaluate("item", item="a") == "a"
    assert morandel.evaluate("item", item=2) == 2
    with pytest.raises(ValueError, match='"number" or "text", not \'date\''):
        morandel.Formula("a", kinds={"a": "date"})
    with pytest.raises(ValueError, match="kinds: the formula has no name 'typo'"):
        morandel.Formula("a", kinds={"typo": "text"})
    with pytest.raises(TypeError, match="kinds: names and kinds are a mapping, not int"):
        morandel.Formula("a", kinds=3)


@pytest.mark.parametrize("missing", [None, math.nan, np.nan, pandas.NA, pandas.NaT])
def test_a_missing_value_gives_a_missing_result(missing):
    assert math.isnan(morandel.evaluate("a + b", a=1, b=missing))
    assert morandel.evaluate("strcat(s, t)", s="x", t=missing) is None
    assert morandel.evaluate("1 / (a - a) + b", a=1, b=missing, on_error="collect")[1] == []


def test_a_formula_that_is_refused():
    with pytest.raises(morandel.FormulaError) as caught:
        morandel.Formula("(价格 + 税率")
    error = caught.value
    assert (error.number, error.message) == (33, "缺少')'")
    assert "'('" in error.english or ")" in error.english
    assert error.position == morandel.Position(*error.position)
    assert error.row is None and error.name is None


@pytest.mark.parametrize("text", ["a\ud800 + 1", "\udc80", 'strcat("\ud800", a)'])
def test_half_of_a_pair_in_a_formula(text):
    with pytest.raises(morandel.FormulaError) as caught:
        morandel.Formula(text)
    assert caught.value.position.character == next(i for i, c in enumerate(text) if c >= "\ud800")


def test_a_computation_that_fails():
    with pytest.raises(morandel.FormulaError) as caught:
        morandel.evaluate("1 / (苹果 - 3)", 苹果=3)
    error = caught.value
    assert error.number == 3
    assert error.english == "division by zero, or by a number too close to it"
    assert error.message == "存在太小的分母(为零)！"
    assert error.position == morandel.Position(byte=2, character=2, bytes=1, characters=1)
    assert str(error).endswith("(error 3), at character 3")


def test_a_text_that_code_page_936_does_not_have():
    with pytest.raises(morandel.FormulaError) as caught:
        morandel.evaluate("strlen(s)", s="a😀b")
    error = caught.value
    assert (error.number, error.name, error.position.character) == (-1, "s", 1)
    with pytest.raises(morandel.FormulaError):
        morandel.evaluate("strlen(s)", s="a\ud800b")


def test_what_is_done_with_an_error():
    f = morandel.Formula("1 / a")
    assert math.isnan(f(a=0, on_error="nan"))
    result, errors = f(a=0, on_error="collect")
    assert math.isnan(result) and [error.number for error in errors] == [3]
    assert f(a=2, on_error="collect") == (0.5, [])
    with pytest.raises(ValueError, match="not 'ignore'"):
        f(a=0, on_error="ignore")


def test_the_checker():
    faults = morandel.check('sqrt("a")')
    assert [(f.name, f.kind, f.operand, f.wants) for f in faults] == [("sqrt", 1, 1, "number")]
    assert faults[0].position == morandel.Position(0, 0, 4, 4)
    assert [(f.kind, f.operand) for f in morandel.check("mod(1, 2, 3)")] == [(4, 0)]
    assert morandel.check("a + b") == []


def test_warnings():
    with pytest.warns(morandel.FormulaWarning, match="1,000: the computation ends at ','.*character 2"):
        f = morandel.Formula("1,000")
    (warning,) = f.warnings
    assert warning.position.character == 1
    assert warning.english and warning.message
    assert pickle.loads(pickle.dumps(f)) == f  # not told again, which would be an error here
    assert f() == 1
    assert morandel.Formula("1000").warnings == []


def test_warnings_are_told_once_for_each_formula():
    frame = pandas.DataFrame({"a": [1.0, 2.0]})
    for make in (
        lambda: morandel.evaluate("1,000*3"),
        lambda: morandel.Formula('if(a = 1,"x",2)'),
        lambda: morandel.add(frame, b="1,000", c="b + 1"),
    ):
        with pytest.warns(morandel.FormulaWarning) as told:
            make()
        assert len(told) == 1 and told[0].filename == __file__
    with pytest.warns(morandel.FormulaWarning, match="b: 1,000: "):
        assert morandel.add(frame, b="1,000").b.tolist() == [1, 1]


def test_strict_makes_errors_of_warnings():
    with pytest.raises(morandel.FormulaError, match="ends at ','.*at character 2") as caught:
        morandel.evaluate("1,000*3", strict=True)
    assert (caught.value.reason, caught.value.position.character) == (21, 1)
    with pytest.raises(morandel.FormulaError):
        morandel.Formula("sqrt(\"a\")", strict=True)
    with pytest.raises(morandel.FormulaError) as caught:
        morandel.add(pandas.DataFrame({"a": [1]}), b="1,000", strict=True)
    assert caught.value.column == "b"
    with pytest.warns(morandel.FormulaWarning):
        formula = morandel.Formula("1,000")
    with pytest.raises(morandel.FormulaError, match="^b: .*ends at ','"):
        morandel.add(pandas.DataFrame({"a": [1]}), b=formula, strict=True)
    assert morandel.evaluate("1+a", a=2, strict=True) == 3
    assert morandel.evaluate("strict+1", {"strict": 1}) == 2


@pytest.mark.parametrize(
    "text, kinds, wanted",
    [
        ("a*2", {"a": "text"}, [(1, 1)]),
        ("价 + 单价*价", {"单价": "text"}, [(6, 12)]),
        ('strcat("价 b",b) + 1', {"b": "text"}, [(16, 18)]),
        ("strlen(a)", {"a": "number"}, [(0, 0)]),
        ("item", {"item": "text"}, []),
        ("strlen(item)", {"item": "text"}, []),
        ("if(a = 1, b, 2)", {"a": "number"}, []),
        ("strlen(b) + b.x*2", {"b": "text"}, []),
        ("strlen(b) + b.x*b", {"b": "text"}, [(15, 15)]),
    ],
)
def test_warnings_go_by_the_kinds(text, kinds, wanted):
    with pytest.MonkeyPatch.context() as patch:
        patch.setattr("warnings.warn", lambda *_, **__: None)
        found = morandel.Formula(text, kinds).warnings
    assert [(w.position.character, w.position.byte) for w in found if w.reason == 22] == wanted
    assert len(found) == len(wanted)


def test_the_checker_tells_warnings_too():
    (fault,) = morandel.check("1;2")
    assert (fault.kind, fault.reason, fault.position.character) == (-1, 20, 1)
    assert "not read" in fault.english and fault.message
    assert [(f.kind, f.name) for f in morandel.check('sqrt("a"),1')] == [(1, "sqrt"), (-1, "")]


def test_pickling():
    f = morandel.Formula("strcat(a, b)", kinds={"b": "text"})
    for other in (pickle.loads(pickle.dumps(f)), copy.copy(f), copy.deepcopy(f)):
        assert other == f and hash(other) == hash(f) and other.names == f.names
        assert other(a="x", b="y") == "xy"
    assert f != morandel.Formula("strcat(a, b)") and f != "strcat(a, b)"
    with pytest.raises(morandel.FormulaError) as caught:
        morandel.Formula("1 / a")(a=[1, 0])
    error = pickle.loads(pickle.dumps(caught.value))
    assert vars(error) == vars(caught.value) and str(error) == str(caught.value)


class Priced(morandel.Formula):
    pass


def test_a_copy_is_of_the_same_class():
    f = Priced("a + 1")
    f.unit = "m"
    for other in (pickle.loads(pickle.dumps(f)), copy.copy(f), copy.deepcopy(f)):
        assert type(other) is Priced and other == f and other.unit == "m" and other(a=1) == 2


def test_a_formula_can_be_referred_to_weakly():
    f = morandel.Formula("a")
    assert weakref.ref(f)() is f


@pytest.mark.parametrize("call", [morandel.add, morandel.evaluate, morandel.Formula.__call__])
def test_types_are_known_to_those_who_ask(call):
    assert "return" in typing.get_type_hints(call)


def test_the_names_of_things():
    assert repr(morandel.Formula("a+1")) == "Formula('a+1')"
    assert repr(morandel.Formula("a", {"a": "text"})) == "Formula('a', {'a': 'text'})"
    assert morandel.Formula(" a+1").text == " a+1"
    assert morandel.__version__.count(".") == 2


@pytest.mark.parametrize(
    "text, values, result",
    [
        ('strsub(email, strfind("@", email, 1), -1)', {"email": "ann@example.org"}, "@example.org"),
        ('strsub(s, strfind("(", s, 1) + 1, 3)', {"s": "a(bcd)"}, "bcd"),
        ("strsub(s, strlen(s) - 60, 5)", {"s": "abcdefgh" * 10}, None),
        ("r2s(sqrt(n - 5000000), 2)", {"n": 5000004.0}, "2"),
        ("r2s(ln(0 - n - 5000), 2)", {"n": -5001.0}, "0"),
    ],
)
def test_a_formula_that_few_values_suit_gives_a_text_too(text, values, result):
    formula = morandel.Formula(text)
    assert formula.kind == "text"
    given = formula(**values)
    assert result is None or given == result
    assert list(formula(**{name: [value] for name, value in values.items()})) == [given]
