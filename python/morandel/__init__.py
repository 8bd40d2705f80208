"""Formulas as text, computed for numbers, texts, arrays and DataFrames.

>>> import morandel
>>> morandel.evaluate("preci(price * qty, 2)", price=2.675, qty=3)
8.03
>>> f = morandel.Formula("price * (1 + rate)")
>>> f(price=[100, 200], rate=0.25)
array([125., 250.])
"""

from ._core import version as _version
from ._errors import Fault, FormulaError, FormulaWarning, Position, Warning
from ._formula import Formula, check, evaluate
from ._frames import add

__version__: str = _version()
__all__ = [
    "Fault",
    "Formula",
    "FormulaError",
    "FormulaWarning",
    "Position",
    "Warning",
    "add",
    "check",
    "evaluate",
]
