"""Values that a signal handler, a thread or they themselves change while they are computed."""

import numpy as np
import pytest

import morandel


def changing(text, other):
    """A formula whose values change just before its errors are asked for."""

    class Changing(morandel.Formula):
        __slots__ = ()

        def _errors(self, sources, rows):
            sources[0][:] = other
            return super()._errors(sources, rows)

    return Changing(text)


@pytest.mark.parametrize("other", [np.nan, 5, None])
def test_texts_that_are_none_when_their_errors_are_asked_for(other):
    values = np.array(["😀"] * 3, dtype=object)
    with pytest.raises(TypeError, match="a text is needed, not"):
        changing("strlen(s)", other)(s=values, on_error="collect")


def test_rows_that_do_not_fail_any_longer():
    share = changing("1 / x", 1)
    with pytest.raises(morandel.FormulaError, match="the values changed.*row 0"):
        share(x=np.zeros(3))
    results, errors = share(x=np.zeros(3), on_error="collect")
    assert np.isnan(results).all()
    assert [(error.row, error.reason) for error in errors] == [(0, 15), (1, 15), (2, 15)]


def test_an_object_that_takes_itself_off_its_array():
    class Fleeting:
        def __float__(self):
            values[0] = None
            raise TypeError

    values = np.array([None, "a"], dtype=object)
    values[0] = Fleeting()
    with pytest.raises(TypeError, match="row 0: a number is needed, not Fleeting"):
        morandel.Formula("x + 1")(x=values)
