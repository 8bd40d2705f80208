"""What a checker of types makes of the package; never run."""

from typing import Optional

import morandel

f = morandel.Formula("a", kinds={"a": "text"})
kind: str = f.names["a"] + f.kind
results = f({"a": 1}, on_error="collect")
message: str = f.warnings[0].english
place: int = morandel.check("a")[0].position.character
try:
    f(a=1)
except morandel.FormulaError as error:
    number: int = error.number
    row: Optional[int] = error.row
    sure: int = error.row  # wrong
morandel.Formula(5)  # wrong
f(on_error="ignore")  # wrong
morandel.evaluate(1.5)  # wrong
f.names = {}  # wrong
