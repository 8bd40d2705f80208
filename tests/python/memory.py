"""Each call, with its first, second, third ... allocation of C++ failing, once or from then on: it ends
with MemoryError or as ever, and gives what it always does afterwards. test_memory.py runs this with
failing_new preloaded, whose path is the argument."""

import ctypes
import itertools
import sys
import warnings

import numpy as np

import morandel

warnings.simplefilter("ignore")
preloaded = ctypes.CDLL(sys.argv[1])
LABEL = 'strcat(name, ": ", r2s(price * 2, 2))'
LONG = "苹果" * 40
NUMBERS = np.arange(1000.0)
TEXTS = np.array(["梨", LONG] * 20, dtype=object)


def refused(call):
    try:
        return call()
    except morandel.FormulaError as error:
        return error.number, error.position, str(error)


CALLS = {
    "evaluate": lambda: morandel.evaluate(LABEL, name=LONG, price=1.5),
    "refused": lambda: refused(lambda: morandel.evaluate("strcat(a, b) + (1", a=LONG, b="")),
    "failed": lambda: refused(lambda: morandel.evaluate("1 / (strlen(a) - 80 * 2)", a=LONG)),
    "check": lambda: [str(fault) for fault in morandel.check('1 + sqrt("a")')],
    "warnings": lambda: [str(w) for w in morandel.Formula("left(s, 2);2").warnings],
    "numbers": lambda: morandel.Formula("a * 2 + b")(a=NUMBERS, b=1).tolist(),
    "texts": lambda: morandel.Formula(LABEL)(name=TEXTS, price=2.5).tolist(),
    "lists": lambda: morandel.Formula("strlen(s) * n")(s=list(TEXTS), n=list(range(40))).tolist(),
    "rows": lambda: refused(lambda: morandel.Formula("1 / a")(a=NUMBERS)),
    "collected": lambda: [
        (error.row, str(error))
        for error in morandel.Formula("ln(a - 3)")(a=NUMBERS, on_error="collect")[1]
    ],
}

for name, call in CALLS.items():
    wanted = call()
    for lasting in (0, 1):
        total = 0
        for which in itertools.count(1):
            preloaded.fail_from_now(which, lasting)
            try:
                given = call()
            except MemoryError:
                given = wanted
            failures = preloaded.stop_failing()
            if failures == 0:
                break
            total += 1
            assert given == wanted, (name, which, lasting, given)
            assert call() == wanted, (name, which, lasting)
        assert total > 0, name
