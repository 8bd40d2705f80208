"""Compares f(df) on a million rows with DataFrame.eval (numexpr, one thread), and for texts with a
row-wise apply, and writes FRAMES.md.

The values are compared first; the rounds are interleaved.
usage: frames.py [--quick], with the package's folder in PYTHONPATH
"""

import concurrent.futures
import datetime
import os
import platform
import statistics
import sys
import time

import numexpr
import numpy as np
import pandas

import morandel
from publish import publish

ROWS = 1_000_000
WARMING = 2.0  # seconds
# For both; at most 0.6.
ARITHMETIC = ["a * b", "(a + b) * c - d / 2", "a * b + c * d - a / c + b / d", "sqrt(a * a + b * b)"]
# Formula, the same in Python, on how many rows that is measured; at most 0.1.
TEXTS = [
    ('strcat(name, ":", r2s(price, 2))', lambda row: row["name"] + ":" + str(int(row["price"] * 100) / 100)),
    ("strlen(name)", lambda row: len(row["name"].encode("gbk"))),
    ("strsub(name, 1, 4)", lambda row: row["name"][:4]),
]
MOST = {"arithmetic": 0.6, "texts": 0.1, "threads": 0.6}


def seconds(work):
    begin = time.perf_counter()
    work()
    return time.perf_counter() - begin


def compare(contestants, rounds):
    found = {name: [] for name in contestants}
    for _ in range(rounds):
        for name, work in contestants.items():
            found[name].append(seconds(work))
    return [statistics.median(times) for times in found.values()]


def arithmetic(rounds):
    random = np.random.default_rng(1)
    df = pandas.DataFrame({name: random.uniform(1, 9, ROWS) for name in "abcd"})
    for text in ARITHMETIC:
        f = morandel.Formula(text)
        if not np.allclose(f(df), df.eval(text, engine="numexpr"), rtol=1e-13):
            sys.exit(f"frames: {text} differs")
        yield text, compare({"ours": lambda f=f: f(df),
                             "theirs": lambda text=text: df.eval(text, engine="numexpr")}, rounds)


def texts(rounds):
    random = np.random.default_rng(1)
    df = pandas.DataFrame({"name": [f"item{i % 1000}" for i in range(ROWS)],
                           "price": random.integers(1, 10_000, ROWS) / 4})
    few = df.iloc[:ROWS // 10]
    for text, by_row in TEXTS:
        f = morandel.Formula(text)
        ours, theirs = f(few.iloc[:5000]), few.iloc[:5000].apply(by_row, axis=1)
        if [str(a).removesuffix(".0") for a in ours] != [str(b).removesuffix(".0") for b in theirs]:
            sys.exit(f"frames: {text} differs: {ours.tolist()[:5]}, {theirs.tolist()[:5]}")
        ours, theirs = compare({"ours": lambda f=f: f(df),
                                "theirs": lambda by_row=by_row: few.apply(by_row, axis=1)}, rounds)
        yield text, [ours, theirs * len(df) / len(few)]


def two_threads(rounds):
    """Two columns by one thread, and by two."""
    values = np.random.default_rng(1).uniform(1, 9, ROWS)
    f = morandel.Formula("sin(x) + ln(x) * x ^ 1.7")
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        def both():
            list(pool.map(lambda _: f(x=values), range(2)))

        # A virtual machine gets its second processor only when it has asked for a while, so the rounds
        # are not interleaved here.
        end = time.perf_counter() + WARMING
        while time.perf_counter() < end:
            both()
        two, = compare({"two": both}, rounds)
    one, = compare({"one": lambda: [f(x=values), f(x=values)]}, rounds)
    return two / one


def main():
    numexpr.set_num_threads(1)
    rounds = 3 if "--quick" in sys.argv else 9
    rows, reached = [], True
    for what, measures in [("arithmetic", arithmetic(rounds)), ("texts", texts(min(rounds, 5)))]:
        for text, (ours, theirs) in measures:
            ratio = ours / theirs
            reached = reached and ratio <= MOST[what]
            rows.append(f"| {what} | `{text}` | {ours * 1000:,.1f} ms | {theirs * 1000:,.1f} ms | "
                        f"{ratio:.2f} | {MOST[what]} |")
    threads = two_threads(rounds)
    reached = reached and threads <= MOST["threads"]
    text = "\n".join([
        "# DataFrames", "",
        f"Written by `./bench --python` on {datetime.date.today()}: {platform.machine()}, {os.cpu_count()} cores, "
        f"Python {platform.python_version()}, pandas {pandas.__version__}, numexpr {numexpr.__version__}, "
        f"NumPy {np.__version__}.", "",
        f"`f(df)` on {ROWS:,} rows, the median of the rounds. Arithmetic against `DataFrame.eval` with its numexpr "
        "engine and one thread, texts against `DataFrame.apply(axis=1)`, measured on a tenth of the rows.", "",
        "| | | Morandel | theirs | ratio | at most |", "|---|---|---|---|---|---|", *rows, "",
        f"Two threads take {threads:.2f} of the time that one takes for two columns "
        f"(at most {MOST['threads']}).", ""])
    publish("FRAMES.md", text, reached)


main()
