"""Compares morandel each with awk and Miller on a file of a million rows, and writes TABLES.md.

The values are compared first; awk prints six digits, as it does unless it is told otherwise. The rounds
are interleaved, each program has both cores, and what it prints goes nowhere.
"""

import datetime
import math
import os
import pathlib
import platform
import random
import resource
import statistics
import subprocess
import sys
import tempfile
import time

from publish import publish

ROOT = pathlib.Path(__file__).resolve().parent.parent
OURS = ROOT / "build/bench/cli/morandel"
ROWS = 1_000_000
MOST_MEMORY = 64  # MiB

# Name, formula for morandel, for awk (columns by number) and for Miller.
ONE = [("total", "price * qty", "$3*$4", "$price * $qty")]
FIVE = ONE + [
    ("gross", "total * (1 + rate)", "total*(1+$5)", "$total * (1 + $rate)"),
    ("tax", "gross - total", "gross-total", "$gross - $total"),
    ("root", "sqrt(tax * tax + 1)", "sqrt(tax*tax+1)", "sqrt($tax * $tax + 1)"),
    ("sum", "total + gross + tax", "total+gross+tax", "$total + $gross + $tax"),
]
# Formulas, the peer to be compared with, and the ratio that is wanted at most.
MEASURES = [("one formula", ONE, "mawk", 0.7), ("five formulas", FIVE, "gawk", 0.4)]
PACKAGES = ["mawk", "gawk", "miller"]


def write_table(path, rows):
    numbers = random.Random(1)
    with open(path, "w", encoding="utf-8") as table:
        table.write("id,name,price,qty,rate\n")
        for row in range(rows):
            table.write(f"{row},item{row % 1000},{numbers.random() * 100:.2f},"
                        f"{numbers.randint(1, 50)},{numbers.random():.3f}\n")


def awk(program, formulas):
    names = [name for name, *_ in formulas]
    head = ", ".join(f'"{name}"' for name in names)
    body = "; ".join(f"{name} = {code}" for name, _, code, _ in formulas)
    return [program, "-F,", "-v", "OFS=,",
            f"NR == 1 {{ print $0, {head}; next }} {{ {body}; print $0, {', '.join(names)} }}"]


def commands(formulas, table):
    ours = [OURS, "each", table]
    for name, formula, *_ in formulas:
        ours += ["--add", f"{name} = {formula}"]
    miller = "; ".join(f"${name} = {code}" for name, _, _, code in formulas)
    return {"morandel": ours, "mawk": awk("mawk", formulas) + [table],
            "gawk": awk("gawk", formulas) + [table], "miller": ["mlr", "--csv", "put", miller, table]}


def output(command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.splitlines()


def check_values(formulas, table):
    lines = {name: output(command) for name, command in commands(formulas, table).items()}
    for name, theirs in lines.items():
        if len(theirs) != len(lines["morandel"]):
            sys.exit(f"tables: {name} gives {len(theirs)} lines")
        for mine, other in zip(lines["morandel"][1:], theirs[1:]):
            pairs = zip(mine.split(",")[5:], other.split(",")[5:])
            if not all(math.isclose(float(a), float(b), rel_tol=1e-5) for a, b in pairs):
                sys.exit(f"tables: {name} gives {other} for {mine}")


def measure(command):
    """Seconds, and the MiB that the program has used at most."""
    begin = time.monotonic()
    child = os.posix_spawnp(str(command[0]), [str(part) for part in command], os.environ,
                            file_actions=[(os.POSIX_SPAWN_OPEN, 1, "/dev/null", os.O_WRONLY, 0)])
    _, status, usage = os.wait4(child, 0)
    seconds = time.monotonic() - begin
    if status != 0:
        sys.exit(f"tables: {command[0]} failed")
    return seconds, usage.ru_maxrss / 1024


def version(package):
    return output(["dpkg-query", "-W", "-f=${Version}", package])[0]


def main():
    rounds = 3 if "--quick" in sys.argv else 9
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    with tempfile.TemporaryDirectory() as folder:
        small, large = pathlib.Path(folder, "small.csv"), pathlib.Path(folder, "large.csv")
        write_table(small, 2000)
        write_table(large, ROWS)
        rows, reached = [], True
        for title, formulas, peer, most in MEASURES:
            check_values(formulas, small)
            all_commands = commands(formulas, large)
            found = {name: [] for name in all_commands}
            for _ in range(rounds):
                for name, command in all_commands.items():
                    found[name].append(measure(command))
            seconds = {name: statistics.median(s for s, _ in values) for name, values in found.items()}
            memory = max(m for _, m in found["morandel"])
            ratio = seconds["morandel"] / seconds[peer]
            reached = reached and ratio <= most and memory <= MOST_MEMORY
            rows.append(f"| {title} | " + " | ".join(f"{seconds[name]:.2f} s" for name in seconds) +
                        f" | {ratio:.2f} of {peer} | {most} | {memory:.0f} MiB |")
    text = "\n".join([
        "# Tables", "",
        f"Written by `./bench --tables` on {datetime.date.today()}: {platform.machine()}, "
        f"{os.cpu_count()} cores, " + ", ".join(f"{p} {version(p)}" for p in PACKAGES) + ".", "",
        f"Elapsed time for a CSV file of {ROWS:,} rows and five columns, the median of {rounds} rounds; "
        "awk splits fields by `-F,` and prints six digits.", "",
        "| | Morandel | mawk | gawk | Miller | ratio | at most | Morandel's memory |",
        "|---|---|---|---|---|---|---|---|", *rows, ""])
    publish("TABLES.md", text, reached)


main()
