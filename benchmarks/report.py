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

ROOT = pathlib.Path(__file__).resolve().parent.parent
PROGRAMS = ROOT / "build/bench/benchmarks"
OURS = "morandel"
PEERS = ["fparser", "muparser", "luajit", "lua54"]
NAMES = {"morandel": "Morandel", "fparser": "fparser", "muparser": "muParser",
         "luajit": "LuaJIT", "lua54": "Lua 5.4"}
PACKAGES = {"fparser": "libfparser-dev", "muparser": "libmuparser-dev",
            "luajit": "libluajit-5.1-dev", "lua54": "liblua5.4-dev"}
# The groups of measures, what they are called, and what is wanted of each measure and of their
# geometric mean, as ratios to the fastest peer.
GROUPS = [
    ("one-shot", "One-shot: values bound by name, text loaded, evaluated", 0.6, 0.5),
    ("new", "The same with a new evaluator", None, None),
    ("repeated", "Repeated: the same formula with new values", 1.3, 1.0),
    ("text", "Texts of 100 bytes, one-shot", 0.4, None),
    ("batch", "A batch of 50 variables", None, None),
]
WANTED = {"one-shot pool": 0.55, "repeated pool": 1.0, "batch in order": 0.4}
NOTES = """\
## Limits

What is above its goal, and why:

- **Repeated** compares calls that are not alike. fparser and muParser are handed an array of numbers for
  a function prepared before, LuaJIT a call of a compiled function. A host of Morandel binds each value
  by its name (4 to 5 ns a name), loads the text, which is compared with the one that is loaded (10 to
  20 ns), and asks for the result: in the pool half of the time. The computation itself takes a third
  longer than fparser's, whose optimiser has left less to compute.
- **Powers** go through the C library's `pow`. Of `a^2` and `a^0.5`, which peers replace by products and
  roots, a product or root is taken where its rounding error shows that `pow` rounds the same way, for
  three numbers in four; `a*a` instead would differ in the last bit for 25,078 of 30,000,000 random
  numbers, and outcomes must not change by a bit. For the same reason nothing is folded, reordered or
  computed once for two places.
- **The range**: every result is held to the range that the language states, and every error is found.
  No peer does either.
"""


def run(command, **options):
    return subprocess.run([str(part) for part in command], check=True, text=True,
                          capture_output=True, **options).stdout


def table_of(output):
    return dict((name, float(value)) for name, value in
                (line.split("\t")[:2] for line in output.splitlines()))


def program(contestant):
    return PROGRAMS / f"bench_{contestant}"


def pinned():
    core = max(os.sched_getaffinity(0))
    return ["taskset", "-c", core]


def check_values():
    """Every value that a peer computes must be Morandel's, to nine digits."""
    def values(contestant):
        found = {}
        for line in run([program(contestant), "values"]).splitlines():
            what, value = line.split("\t")
            found.setdefault(what, []).append(float(value))
        return found

    ours = values(OURS)
    for peer in PEERS:
        for what, theirs in values(peer).items():
            for a, b in zip(ours[what], theirs, strict=False):
                if not math.isclose(a, b, rel_tol=1e-9, abs_tol=1e-12):
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
        if measure.startswith("new ") or measure == "batch backwards":
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
    times = {contestant: {} for contestant in [OURS] + PEERS}
    for _ in range(rounds):
        for contestant in times:
            output = run(pinned() + [program(contestant), "time", seconds])
            for measure, value in table_of(output).items():
                times[contestant].setdefault(measure, []).append(value)
    return times


def measure_host():
    rows = [line.split("\t") for line in run(pinned() + [PROGRAMS / "bench_host"]).splitlines()]
    # By turns, since a busy machine is so for a while; the best of each.
    runs = {threads: [] for threads in (1, 2)}
    for _ in range(9):
        for threads, found in runs.items():
            line = run([ROOT / "build/bench-threads/benchmarks/bench_host", "threads", threads])
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
    for peer in PEERS:
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

    def peers_of(self, measure):
        return [p for p in PEERS if measure in self.medians[p]]

    def ratio(self, measure):
        peers = self.peers_of(measure)
        if measure.startswith("text"):
            peers = ["luajit"]
        if not peers:
            return None
        return self.medians[OURS][measure] / min(self.medians[p][measure] for p in peers)

    def ratios(self, group):
        return [self.ratio(m) for m in self.measures(group) if "pool" not in m]


def write_results(results, extra, rounds, seconds):
    lines = ["# Benchmark results", "",
             f"Written by `./bench` on {datetime.date.today()}: {processor()}, {os.cpu_count()} cores, "
             f"{platform.freedesktop_os_release()['PRETTY_NAME']}, g++ {run(['g++', '-dumpfullversion']).strip()}. "
             f"{versions()}.", "",
             f"Nanoseconds a piece of work, the median of {rounds} rounds of {seconds} s each, the least "
             "in parentheses. The ratio is Morandel's median to the fastest peer's, for texts to LuaJIT's.", ""]
    for group, title, each, mean in GROUPS:
        lines += [f"## {title}", "", "| | " + " | ".join(NAMES[c] for c in [OURS] + PEERS) + " | ratio | at most |",
                  "|---" * (len(PEERS) + 4) + "|"]
        for measure in results.measures(group):
            cells = []
            for contestant in [OURS] + PEERS:
                median = results.medians[contestant].get(measure)
                cells.append("" if median is None else
                             f"{median:,.1f} ({results.least[contestant][measure]:,.1f})")
            ratio = results.ratio(measure)
            wanted = WANTED.get(measure, each)
            lines.append(f"| {measure.split(' ', 1)[1]} | " + " | ".join(cells) +
                         f" | {'' if ratio is None else f'{ratio:.2f}'} | {wanted or ''} |")
        ratios = [r for r in results.ratios(group) if r is not None]
        if mean:
            lines.append(f"| geometric mean without the pool | | | | | | {geometric_mean(ratios):.2f} | {mean} |")
        lines.append("")
    backwards = results.medians[OURS]["batch backwards"] / results.medians[OURS]["batch in order"]
    lines += [f"Backwards, the worst order, takes {backwards:.1f} times as long as in order (at most 25).", "",
              "## Morandel alone", "", "| | | |", "|---|---|---|"]
    lines += [f"| {name} | {value} | {unit} |" for name, value, unit in extra]
    lines += ["", NOTES]
    (ROOT / "benchmarks/RESULTS.md").write_text("\n".join(lines))


def write_plot(results):
    """Bars of the headline measures: time relative to Morandel's, on a logarithmic scale."""
    shown = ["one-shot pool", "repeated pool", "text find", "batch in order"]
    colours = {"morandel": "#b5322a", "fparser": "#4c6a92", "muparser": "#7d9cc0",
               "luajit": "#5a8f5c", "lua54": "#9cc29d"}
    width, left, bar, gap = 760, 150, 16, 26
    rows, y = [], 30
    most = max(results.medians[c][m] / results.medians[OURS][m] for m in shown
               for c in results.peers_of(m))
    scale = (width - left - 170) / math.log10(most / 0.1)
    for measure in shown:
        rows.append(f'<text x="{left - 10}" y="{y + 13}" text-anchor="end" font-weight="bold">{measure}</text>')
        for contestant in [OURS] + results.peers_of(measure):
            nanoseconds = results.medians[contestant][measure]
            length = math.log10(nanoseconds / results.medians[OURS][measure] / 0.1) * scale
            rows.append(f'<rect x="{left}" y="{y}" width="{length:.1f}" height="{bar - 3}" fill="{colours[contestant]}"/>'
                        f'<text x="{left + length + 6:.1f}" y="{y + 11}">{NAMES[contestant]} {nanoseconds:,.0f} ns</text>')
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
                           ("repeated pool", "the same, loaded again with new values"),
                           ("text find", "find in a text of 100 bytes"),
                           ("batch in order", "a batch of 50 variables")]:
        peer = min(results.peers_of(measure), key=lambda p: results.medians[p][measure])
        rows.append(f"| {label} | {results.medians[OURS][measure]:,.0f} ns | {results.medians[peer][measure]:,.0f} ns "
                    f"({NAMES[peer]}) | {results.medians[OURS][measure] / results.medians[peer][measure]:.2f} |")
    text = readme.read_text()
    begin, end = "<!-- benchmark -->\n", "<!-- /benchmark -->"
    head, _, tail = text.partition(begin)
    readme.write_text(head + begin + "\n".join(rows) + "\n" + end + tail.partition(end)[2])


def main():
    check_values()
    if "--count" in sys.argv:
        count_instructions()
        return
    rounds, seconds = (3, 0.02) if "--quick" in sys.argv else (9, 0.05)
    results = Results(measure_times(rounds, seconds))
    extra = measure_host() + measure_each(1_000_000)
    write_results(results, extra, rounds, seconds)
    write_plot(results)
    write_summary(results)
    print((ROOT / "benchmarks/RESULTS.md").read_text())


main()
