"""Two Dask workers compute the same table again and again, for as long as one likes: each time with the
same values, and in memory that stays flat.

usage: workers.py SECONDS, with the package's folder and that of cluster.py in PYTHONPATH
"""

import pathlib
import sys
import tempfile
import time

import dask.dataframe
import pandas

import morandel
from cluster import Cluster
from tables import FORMULAS, write_parts

PARTS, ROWS = 4, 20_000
MOST_GROWN = 16384  # KiB; Python's own memory comes and goes


def resident(process):
    return int(pathlib.Path(f"/proc/{process.pid}/statm").read_text().split()[1]) * 4


def main():
    begin, seconds = time.monotonic(), float(sys.argv[1])
    rounds = different = 0
    before = None
    with tempfile.TemporaryDirectory() as scratch, Cluster(pathlib.Path(scratch), 2) as cluster:
        files = write_parts(pathlib.Path(scratch), PARTS, ROWS)
        table = dask.dataframe.read_csv(files, blocksize=None, float_precision="round_trip")
        made = morandel.add(table, FORMULAS, on_error="nan")
        first = made.compute()
        while time.monotonic() - begin < seconds:
            try:
                pandas.testing.assert_frame_equal(made.compute(), first)
            except AssertionError as difference:
                print(difference)
                different += 1
            rounds += 1
            if before is None and time.monotonic() - begin >= seconds / 5:
                before = [resident(worker) for worker in cluster.workers]
        after = [resident(worker) for worker in cluster.workers]
    grown = [late - early for early, late in zip(before, after)]
    print(f"two Dask workers: {rounds} tables of {PARTS * ROWS:,} rows, {different} different")
    print(f"memory: {before} KiB after a fifth of the time, {grown} KiB more at the end")
    if different or not rounds or max(grown) > MOST_GROWN:
        sys.exit(1)


main()
