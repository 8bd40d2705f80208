"""Five million rows on two workers, one of which is killed half way: every value is the one that the
command gives, and rows that fail are named with file and row."""

import pathlib
import re
import time

import dask.dataframe
import numpy as np
import pandas
import pytest
from distributed import futures_of

import morandel
from cluster import Cluster
from tables import FORMULAS, each, write_parts

PARTS, ROWS = 10, 500_000


@pytest.fixture(scope="module")
def files(tmp_path_factory):
    return write_parts(tmp_path_factory.mktemp("tables"), PARTS, ROWS)


@pytest.fixture
def cluster(tmp_path):
    with Cluster(tmp_path, 2) as cluster:
        yield cluster


def read(files):
    return dask.dataframe.read_csv(
        files, blocksize=None, include_path_column=True, float_precision="round_trip")


def by_the_command(files, folder):
    """The command's values, and where it says that a row fails."""
    frames, failures = [], set()
    outputs = [folder / file.name for file in files]
    running = []
    for file, output in zip(files, outputs):
        running.append(each(file, output))
        if len(running) == 2:
            for process in running:
                told = process.communicate()[1]
                assert process.returncode == 0, told
                failures |= set(re.findall(r"(part-\d+\.csv) row (\d+), (\w+): division", told))
            running = []
    assert not running
    for output in outputs:
        frames.append(pandas.read_csv(output, float_precision="round_trip",
                                      keep_default_na=False, na_values={"share": [""]}))
        output.unlink()
    return pandas.concat(frames, ignore_index=True), failures


def test_a_worker_is_killed_and_nothing_is_lost(cluster, files, tmp_path):
    made, failed = read(files).pipe(morandel.add, FORMULAS, on_error="collect")
    assert list(made.columns) == ["name", "price", "qty", "path", "total", "label", "share"]
    made, failed = cluster.client.persist([made, failed])
    parts = futures_of(made)
    until = time.monotonic() + 120
    while sum(part.status == "finished" for part in parts) < 3:
        assert time.monotonic() < until
        time.sleep(0.02)
    cluster.workers[0].kill()
    cluster.workers[0].wait()
    assert sum(part.status == "finished" for part in parts) < PARTS, "the kill came too late"

    frame, errors = cluster.client.gather(cluster.client.compute([made, failed]))
    assert len(cluster.client.scheduler_info()["workers"]) == 1
    expected, failures = by_the_command(files, tmp_path)
    assert len(frame) == len(expected) == PARTS * ROWS
    for name in ["name", "price", "qty", *FORMULAS]:
        found, wanted = frame[name].to_numpy(), expected[name].to_numpy()
        if wanted.dtype == float:
            wanted, found = wanted.view("u8"), found.astype(float).view("u8")
            is_missing = np.isnan(expected[name].to_numpy())
            assert np.isnan(frame[name].to_numpy()[is_missing]).all()
            found, wanted = found[~is_missing], wanted[~is_missing]
        assert (found == wanted).all(), name
    assert frame.share.isna().sum() == 2 * PARTS

    # A row of pandas is counted from 0, one of the command from 1.
    named = {(pathlib.Path(path).name, str(row + 1), column)
             for path, row, column in zip(errors.path, errors.index, errors.error_column)}
    assert named == failures and len(named) == 2 * PARTS
    assert set(errors.error_number) == {3} and set(errors.qty) == {0}


def test_an_error_names_file_and_row(cluster, files):
    made = read(files[:2]).pipe(morandel.add, share="price / qty", origin="path")
    with pytest.raises(morandel.FormulaError) as caught:
        made.compute(scheduler=cluster.client)
    error = caught.value
    assert (error.number, error.column) == (3, "share")
    assert error.row in (7, ROWS // 2)
    assert pathlib.Path(error.origin).name in ("part-00.csv", "part-01.csv")
    assert f"row {error.row} of {error.origin}" in str(error)


def test_nothing_is_computed_before_it_is_asked_for(cluster, files):
    table = read(files)
    made = table.pipe(morandel.add, code="label", label='strcat(name, "!")', total="price * 2")
    assert made.dtypes.astype(str)[["code", "total"]].tolist() == ["object", "float64"]
    with pytest.raises(KeyError, match="total: there is no column 'prise'"):
        morandel.add(table, total="prise * 2")
    with pytest.raises(ValueError, match="depends on itself"):
        morandel.add(table, a="b", b="a")
    made = table.pipe(morandel.add, share="price / qty", on_error="nan")
    assert made.partitions[0].share.isna().sum().compute() == 2
    assert made.npartitions == PARTS
