"""Runs the contestants in turn, checks their values, and writes the results.

One process a contestant and round, pinned to one core, the rounds interleaved; of each measure the
median and the least over the rounds. See ../bench for how to call it.
"""

import datetime
import math
import os
import pathlib
import platform
import re
import statistics
import subprocess
import sys
import tempfile
import typing

ROOT = pathlib.Path(__file__).resolve().parent.parent
PROGRAMS = ROOT / "build/bench/benchmarks"
OURS = "morandel"
PEERS = ["fparser", "muparser", "luajit", "lua54"]
ARRAYS = ["numexpr", "numpy", "numpy-out"]  # contestants for columns, in Python
NAMES = {"morandel": "Morandel", "fparser": "fparser", "muparser": "muParser",
         "luajit": "LuaJIT", "lua54": "Lua 5.4", "numexpr": "numexpr", "numpy": "numpy",
         "numpy-out": "numpy, out="}
PACKAGES = {"fparser": "libfparser-dev", "muparser": "libmuparser-dev",
            "luajit": "libluajit-5.1-dev", "lua54": "liblua5.4-dev",
            "numexpr": "python3-numexpr", "numpy": "python3-numpy"}
DEBIAN_PYTHON = "/usr/bin/python3"  # which has those packages


class Group(typing.NamedTuple):
    """Measures that make a table: what is wanted of each, by rows where there are several sizes, and
    of their geometric mean, as ratios to the fastest of the judges. Against another group of measures
    where it says so, for Morandel itself if it is the judge."""
    key: str
    title: str
    each: float | dict | None = None
    mean: float | None = None
    peers: list = PEERS
    judges: list = PEERS
    against: str = ""
    digits: int = 1


COLUMN_PEERS = [*ARRAYS, "muparser"]
GROUPS = [
    Group("one-shot", "One-shot: values bound by name, text loaded, evaluated", 0.6, 0.5),
    Group("new", "The same with a new evaluator"),
    Group("prepared", "Repeated, prepared: the same formula with new values, handed over as an array",
          2.0, 1.3, against="repeated"),
    Group("repeated", "Repeated by name: values bound by name, the same text loaded, evaluated"),
    Group("text", "Texts of 100 bytes, one-shot", 0.4, judges=["luajit"]),
    Group("batch", "A batch of 50 variables"),
    Group("columns-sums", "Columns of + - * /, nanoseconds a row", {1_000: 0.4, 20_000: 0.4, 1_000_000: 0.75},
          peers=COLUMN_PEERS, judges=COLUMN_PEERS, digits=2),
    Group("columns-roots", "Columns of roots, powers of 2 and comparisons, nanoseconds a row", 0.8,
          peers=COLUMN_PEERS, judges=COLUMN_PEERS, digits=2),
    Group("columns-functions", "Columns of sin, ln and pow, nanoseconds a row; the ratio is to muParser", 1.0,
          peers=COLUMN_PEERS, judges=["muparser"], digits=2),
    Group("columns-texts", "Columns of 20,000 texts of 100 bytes, nanoseconds a row, and row by row with CExpress",
          0.5, peers=[OURS], judges=[OURS], against="rows-texts"),
]
WANTED = {"one-shot pool": 0.55, "prepared pool": 1.0, "repeated pool": 2.0, "batch in order": 0.4}
BY_KEY = {group.key: group for group in GROUPS}
NOTES = """\
## Limits

What is above its goal, and why:

- **Repeated by name** compares calls that are not alike. fparser and muParser are handed an array of
  numbers for a function prepared before, LuaJIT a call of a compiled function, as Morandel's prepared
  formulas are. A host of the other classes binds each value by its name, loads the text, which is
  compared with the one that is loaded, and asks for the result.
- **sin, ln, pow and the like** cost in columns, too, what they cost in the C library, since outcomes do
  not change by a bit, row by row or by columns; numpy has vector code of its own for them, whose last
  digits differ.
- **Powers** go through the C library's `pow`. Where the exponent is 2, 3, 0.5, 1.5 or 2.5, which peers
  replace by products and roots, those are taken where what they lost shows that `pow` rounds the same
  way, for 31 numbers in 32; `a*a` alone would differ in the last bit for 25,078 of 30,000,000 random
  numbers, and outcomes must not change by a bit. For the same reason nothing is folded but what is
  constant, nothing reordered or computed once for two places; of `products` fparser computes a third.
- **The environment**: each computation asks the processor how it rounds and what it traps, since hosts
  may have changed that, which takes 4 to 5 ns, as long as the shortest formulas take the peers.
- **The range**: every result is held to the range that the language states, and every error is found.
  No peer does either.

Columns of + - * /, of roots, comparisons and the like are computed by loops over blocks of rows that
the compiler makes vector code of, for the instructions that the processor has; `tests/vectorized.sh`
asks the compiler of each loop whether it did. The status of each row is written as well, which no peer
has. muParser computes columns by its bulk mode, numpy as the formula is written and, as "out=", by
calls that write to arrays that are there before; numexpr writes to such arrays. Comparisons give numpy
and numexpr truths of a byte. All have one thread.

## Threads

What evaluators share is one per thread; `benchmarks/state` compares that with a library built with
`MORANDEL_PROCESS_WIDE_STATE`, least nanoseconds, shared libraries:

| | evaluator built | `strsub(s, 2, 2)` | `strcat(s, "x", s)` | `a*2+1` |
|---|---|---|---|---|
| Linux, of each thread | 142 | 40 | 58 | 13 |
| Linux, of the process | 140 | 37 | 55 | 13 |
| `Morandel10.dll`, x64 under Wine, of each thread | 405 | 9,110 | 9,170 | 8,980 |
| the same, of the process | 392 | 9,120 | 9,420 | 9,010 |
| `Morandel10.dll`, x86 under Wine, of each thread | 505 | 9,340 | 9,350 | 9,370 |
| the same, of the process | 503 | 9,480 | 10,270 | 9,350 |

So it costs two or three nanoseconds an evaluation with a function of texts, and next to nothing in the
DLL. There nearly all of the time goes into saving and restoring the floating-point environment, which
MinGW's C library does after asking the processor each time what it can; a virtual machine answers that
slowly.
"""


def run(command, **options):
    return subprocess.run([str(part) for part in command], check=True, text=True,
                          capture_output=True, **options).stdout


def table_of(output):
    return dict((name, float(value)) for name, value in
                (line.split("\t")[:2] for line in output.splitlines()))


def program(contestant):
    return PROGRAMS / f"bench_{contestant}"


def command(contestant):
    if contestant in ARRAYS:
        return [DEBIAN_PYTHON, ROOT / "benchmarks/contestants/arrays.py", contestant, program(OURS)]
    return [program(contestant)]


def pinned():
    core = max(os.sched_getaffinity(0))
    return ["taskset", "-c", core]


def check_values():
    """Every value that a peer computes must be Morandel's, to nine digits, of columns to the last
    places; Morandel's own, prepared or by columns, must be the same row by row."""
    def values(contestant):
        found = {}
        for line in run([*command(contestant), "values"]).splitlines():
            what, value = line.split("\t")
            found.setdefault(what, []).append(float(value))
        return found

    ours = values(OURS)
    for what, found in ours.items():
        for begin, other in [("prepared ", "repeated "), ("columns ", "rows ")]:
            if what.startswith(begin) and found != ours[other + what.removeprefix(begin)]:
                sys.exit(f"{what} differs from {other}")
    for peer in PEERS + ARRAYS:
        for what, theirs in values(peer).items():
            digits = 1e-13 if what.startswith("columns ") else 1e-9
            for a, b in zip(ours[what], theirs, strict=False):
                if not math.isclose(a, b, rel_tol=digits, abs_tol=min(digits, 1e-12)):
                    sys.exit(f"{NAMES[peer]} computes {b} for {what}, not {a}")


def count_instructions():
    def instructions(contestant, measure, rounds):
        with tempfile.NamedTemporaryFile() as out:
            errors = subprocess.run(
                ["valgrind", "--tool=callgrind", f"--callgrind-out-file={out.name}",
                 program(contestant), "count", measure, str(rounds)],
                check=True, text=True, capture_output=True)
        refs = int(re.search(r"Collected : (\d+)", errors.stderr).group(1))
        return refs, int(errors.stdout or 1)

    print("instructions a piece of work")
    for measure in run([program(OURS), "list"]).splitlines():
        if measure.startswith(("new ", "columns-", "rows-")) or measure == "batch backwards":
            continue
        # LuaJIT makes its own instructions, which callgrind does not follow.
        for contestant in [OURS, "fparser", "muparser", "lua54"]:
            if measure not in run([program(contestant), "list"]).splitlines():
                continue
            more = 4 if "pool" in measure else 2000
            least, works = instructions(contestant, measure, 1)
            most, _ = instructions(contestant, measure, 1 + more)
            print(f"{measure:28}{NAMES[contestant]:12}{(most - least) / more / works:12.0f}",
                  flush=True)


def measure_times(rounds, seconds):
    times = {contestant: {} for contestant in [OURS] + PEERS + ARRAYS}
    for _ in range(rounds):
        for contestant in times:
            output = run([*pinned(), *command(contestant), "time", seconds])
            for measure, value in table_of(output).items():
                times[contestant].setdefault(measure, []).append(value)
    return times


def measure_host():
    rows = [line.split("\t") for line in run(pinned() + [PROGRAMS / "bench_host"]).splitlines()]
    # By turns, since a busy machine is so for a while; the best of each.
    runs = {(what, threads): [] for what in ("threads", "columns") for threads in (1, 2)}
    for _ in range(9):
        for (what, threads), found in runs.items():
            line = run([PROGRAMS / "bench_host", what, threads])
            found.append(line.rstrip("\n").split("\t"))
    return rows + [max(found, key=lambda row: float(row[1])) for found in runs.values()]


def measure_each(rows):
    """Rows a second and memory of the command over a CSV file."""
    with tempfile.TemporaryDirectory() as folder:
        table = pathlib.Path(folder) / "rows.csv"
        with table.open("w") as out:
            out.write("name,price,quantity\n")
            for row in range(rows):
                out.write(f"item{row},{row % 997}.25,{row % 13}\n")
        command = ROOT / "build/bench/cli/morandel"
        with (pathlib.Path(folder) / "out.csv").open("w") as out:
            before = os.times()
            process = subprocess.Popen([command, "each", "--add", "total = price*quantity*1.19", table], stdout=out)
            _, status, usage = os.wait4(process.pid, 0)
            if status != 0:
                sys.exit("morandel each failed")
            seconds = os.times().elapsed - before.elapsed
    return [["each, a CSV file of 1,000,000 rows", f"{rows / seconds / 1e6:.2f}", "million rows a second"],
            ["the same, memory", f"{usage.ru_maxrss / 1024:.1f}", "MiB"]]


def geometric_mean(numbers):
    return math.exp(statistics.fmean(math.log(number) for number in numbers))


def versions():
    found = []
    for peer in PACKAGES:
        version = run(["dpkg-query", "-W", "-f=${Version}", PACKAGES[peer]])
        found.append(f"{NAMES[peer]} {version}")
    return ", ".join(found)


def processor():
    for line in open("/proc/cpuinfo"):
        if line.startswith("model name"):
            return line.split(":", 1)[1].strip()
    return platform.machine()


class Results:
    def __init__(self, times):
        self.medians = {c: {m: statistics.median(v) for m, v in t.items()} for c, t in times.items()}
        self.least = {c: {m: min(v) for m, v in t.items()} for c, t in times.items()}

    def measures(self, group):
        return [m for m in self.medians[OURS] if m.split(" ")[0] == group]

    def theirs(self, measure):
        """What the peers' measure is called, and which of them have it."""
        key, label = measure.split(" ", 1)
        group = BY_KEY[key]
        theirs = f"{group.against or key} {label}"
        return theirs, [p for p in group.peers if theirs in self.medians[p]]

    def fastest(self, measure):
        theirs, peers = self.theirs(measure)
        judges = [p for p in peers if p in BY_KEY[measure.split(" ")[0]].judges]
        return min(((self.medians[p][theirs], p) for p in judges), default=None)

    def ratio(self, measure):
        fastest = self.fastest(measure)
        return fastest and self.medians[OURS][measure] / fastest[0]

    def ratios(self, group):
        return [self.ratio(m) for m in self.measures(group) if "pool" not in m]


def label_and_wanted(group, measure):
    label, wanted = measure.split(" ", 1)[1], WANTED.get(measure, group.each)
    size, _, formula = label.partition(" ")
    if formula and group.key.startswith("columns-"):
        label = f"{formula}, {int(size):,} rows"
    return label, wanted[int(size)] if isinstance(wanted, dict) else wanted


def table(results, group):
    def cell(contestant, measure):
        median = results.medians[contestant].get(measure)
        return "" if median is None else (f"{median:,.{group.digits}f} "
                                          f"({results.least[contestant][measure]:,.{group.digits}f})")

    names = [NAMES[OURS]] + ["row by row" if p == OURS else NAMES[p] for p in group.peers]
    rows = [["", *names, "ratio", "at most"]]
    for measure in results.measures(group.key):
        theirs, _ = results.theirs(measure)
        ratio = results.ratio(measure)
        label, wanted = label_and_wanted(group, measure)
        rows.append([label, cell(OURS, measure), *(cell(p, theirs) for p in group.peers),
                     "" if ratio is None else f"{ratio:.2f}", str(wanted or "")])
    if group.mean:
        mean = geometric_mean([r for r in results.ratios(group.key) if r is not None])
        rows.append(["geometric mean without the pool", *[""] * len(names), f"{mean:.2f}", str(group.mean)])
    lines = [f"| {' | '.join(row)} |" for row in rows]
    return [f"## {group.title}", "", *lines[:1], "|---" * len(rows[0]) + "|", *lines[1:], ""]


def write_results(results, extra, rounds, seconds):
    lines = ["# Benchmark results", "",
             f"Written by `./bench` on {datetime.date.today()}: {processor()}, {os.cpu_count()} cores, "
             f"{platform.freedesktop_os_release()['PRETTY_NAME']}, g++ {run(['g++', '-dumpfullversion']).strip()}. "
             f"{versions()}.", "",
             f"Nanoseconds a piece of work, the median of {rounds} rounds of {seconds} s each, the least "
             "in parentheses. The ratio is Morandel's median to the fastest peer's, for texts to LuaJIT's.", ""]
    for group in GROUPS:
        lines += table(results, group)
    backwards = results.medians[OURS]["batch backwards"] / results.medians[OURS]["batch in order"]
    by_threads = [float(value) for name, value, _ in extra if name.startswith("rows by columns")]
    lines += [f"Backwards, the worst order, takes {backwards:.1f} times as long as in order (at most 25).", "",
              f"Two threads compute {by_threads[1] / by_threads[0]:.2f} times as many rows of + - * / by columns, which "
              "fit the second-level cache, as one (at least 1.8).", "",
              "## Morandel alone", "", "| | | |", "|---|---|---|"]
    lines += [f"| {name} | {value} | {unit} |" for name, value, unit in extra]
    lines += ["", NOTES]
    (ROOT / "benchmarks/RESULTS.md").write_text("\n".join(lines))


SUMS = "columns-sums 20000 (a+b)*c-d/2"
PLOTTED = {SUMS: "a row of a column"}


def digits_of(nanoseconds):
    return f"{nanoseconds:,.{0 if nanoseconds >= 10 else 2}f}"


def write_plot(results):
    """Bars of the headline measures: time relative to Morandel's, on a logarithmic scale."""
    shown = ["one-shot pool", "prepared pool", "text find", "batch in order", SUMS]
    colours = {"morandel": "#b5322a", "fparser": "#4c6a92", "muparser": "#7d9cc0",
               "luajit": "#5a8f5c", "lua54": "#9cc29d", "numexpr": "#8a6bb0", "numpy": "#b39ccf",
              "numpy-out": "#d3c5e4"}
    width, left, bar, gap = 760, 150, 16, 26
    rows, y = [], 30
    most = max(results.medians[c][results.theirs(m)[0]] / results.medians[OURS][m] for m in shown
               for c in results.theirs(m)[1])
    scale = (width - left - 170) / math.log10(most / 0.1)
    for measure in shown:
        rows.append(f'<text x="{left - 10}" y="{y + 13}" text-anchor="end" font-weight="bold">{PLOTTED.get(measure, measure)}</text>')
        theirs, peers = results.theirs(measure)
        for contestant in [OURS] + peers:
            nanoseconds = results.medians[contestant][measure if contestant == OURS else theirs]
            length = math.log10(nanoseconds / results.medians[OURS][measure] / 0.1) * scale
            rows.append(f'<rect x="{left}" y="{y}" width="{length:.1f}" height="{bar - 3}" fill="{colours[contestant]}"/>'
                        f'<text x="{left + length + 6:.1f}" y="{y + 11}">{NAMES[contestant]} {digits_of(nanoseconds)} ns</text>')
            y += bar
        y += gap - bar + 8
    (ROOT / "benchmarks/results.svg").write_text(
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{y + 10}" '
        f'font-family="sans-serif" font-size="12">\n<rect width="100%" height="100%" fill="white"/>\n'
        f'<text x="{left}" y="18">time a piece of work, logarithmic, Morandel\'s bars of equal length</text>\n'
        + "\n".join(rows) + "\n</svg>\n")


def write_summary(results):
    readme = ROOT / "README.md"
    rows = ["| mode | Morandel | fastest peer | ratio |", "|---|---|---|---|"]
    for measure, label in [("one-shot pool", "64 formulas in random order, text to result"),
                           ("prepared pool", "the same, prepared before"),
                           ("repeated pool", "the same, values by name, text loaded again"),
                           ("text find", "find in a text of 100 bytes"),
                           ("batch in order", "a batch of 50 variables"),
                           (SUMS, "`(a+b)*c-d/2`, a row of 20,000 in columns")]:
        nanoseconds, peer = results.fastest(measure)
        rows.append(f"| {label} | {digits_of(results.medians[OURS][measure])} ns | {digits_of(nanoseconds)} ns "
                    f"({NAMES[peer]}) | {results.ratio(measure):.2f} |")
    text = readme.read_text()
    begin, end = "<!-- benchmark -->\n", "<!-- /benchmark -->"
    head, _, tail = text.partition(begin)
    readme.write_text(head + begin + "\n".join(rows) + "\n" + end + tail.partition(end)[2])


def main():
    os.environ["OMP_NUM_THREADS"] = "1"  # muParser's bulk mode
    check_values()
    if "--count" in sys.argv:
        count_instructions()
        return
    rounds, seconds = (3, 0.02) if "--quick" in sys.argv else (9, 0.04)
    results = Results(measure_times(rounds, seconds))
    extra = measure_host() + measure_each(1_000_000)
    write_results(results, extra, rounds, seconds)
    write_plot(results)
    write_summary(results)
    print((ROOT / "benchmarks/RESULTS.md").read_text())


main()
