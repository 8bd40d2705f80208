"""Measures what docs/scale.md tells: rows a second by Dask on one and two workers and by plain
processes, and on paper's behalf the cost of a row and of handing a block over. Prints JSON.

usage: scale.py, with the package's folder in PYTHONPATH and the command in MORANDEL_COMMAND
"""

import json
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

import dask.dataframe
import pandas

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests/python/scale"))

import morandel  # noqa: E402
from cluster import Cluster  # noqa: E402
from tables import COMMAND, FORMULAS, write_parts  # noqa: E402

PARTS, ROWS = 8, 100_000


def seconds(work):
    begin = time.perf_counter()
    work()
    return time.perf_counter() - begin


def processor_seconds(process):
    fields = pathlib.Path(f"/proc/{process}/stat").read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def median(work, rounds=3):
    return statistics.median(seconds(work) for _ in range(rounds))


def by_dask(files, folder, workers):
    def work():
        table = dask.dataframe.read_csv(files, blocksize=None, float_precision="round_trip")
        made = table.pipe(morandel.add, FORMULAS, on_error="nan")
        made.to_csv(str(folder / f"out-{workers}-*.csv"), index=False)

    with Cluster(folder, workers) as cluster:
        work()  # what workers import, they import once
        again = median(work)
        # A scheduler hands blocks out one after the other: what one costs it.
        count = 2000
        empty = [dask.delayed(abs)(number) for number in range(count)]
        before = processor_seconds(cluster.scheduler.pid)
        cluster.client.gather(cluster.client.compute(empty))
        handing = (processor_seconds(cluster.scheduler.pid) - before) / count
    return again, handing


def by_processes(file, folder, jobs):
    adds = " ".join(f"--add '{name} = {formula}'" for name, formula in FORMULAS.items())
    each = f"{COMMAND} each --quiet --on-error empty {adds} 2>/dev/null | tail -n +2"
    size = file.stat().st_size // PARTS + 1
    command = ["parallel", "--will-cite", "--keep-order", "--jobs", str(jobs), "--header", ":",
               "--pipepart", "--block", str(size), "-a", file, each]

    def work():
        with (folder / "plain.csv").open("w") as out:
            subprocess.run(command, check=True, stdout=out)

    return median(work)


def one_block(file, folder):
    """Seconds a row of what is done with a block."""
    read = lambda: pandas.read_csv(file, float_precision="round_trip")  # noqa: E731
    frame = read()
    add = lambda: morandel.add(frame, FORMULAS, on_error="nan")  # noqa: E731
    made = add()
    parts = {"read": read, "add": add, "write": lambda: made.to_csv(folder / "one.csv", index=False)}
    return {name: median(work) / ROWS for name, work in parts.items()}


def main():
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch)
        files = write_parts(folder, PARTS, ROWS)
        whole = folder / "whole.csv"
        with whole.open("wb") as out:
            out.write(b"name,price,qty\n")
            for file in files:
                out.write(file.read_bytes().partition(b"\n")[2])
        found = {"rows": PARTS * ROWS, "bytes": whole.stat().st_size}
        found["a row"] = one_block(files[0], folder)
        found["dask 1"], _ = by_dask(files, folder, 1)
        found["dask 2"], found["handing over"] = by_dask(files, folder, 2)
        found["plain 1"] = by_processes(whole, folder, 1)
        found["plain 2"] = by_processes(whole, folder, 2)
    print(json.dumps(found, indent=1))


main()
