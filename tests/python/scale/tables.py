"""Tables in parts, and the formulas that are computed for them, by Dask and by the command."""

import os
import pathlib
import subprocess

FORMULAS = {
    "total": "price * qty",
    "label": 'strcat(name, ":", r2s(total, 1))',
    "share": "price / qty",
}
COMMAND = os.environ.get("MORANDEL_COMMAND", "morandel")


def write_parts(folder: pathlib.Path, parts: int, rows: int) -> list[pathlib.Path]:
    """Rows that are all different; in two of a part there is nothing to divide by."""
    files = []
    for part in range(parts):
        files.append(folder / f"part-{part:02}.csv")
        with files[-1].open("w", encoding="utf-8") as table:
            table.write("name,price,qty\n")
            first = part * rows
            table.writelines(
                f"物品{i % 997},{i % 99991 / 100},{0 if i in (first + 7, first + rows // 2) else i % 49 + 1}\n"
                for i in range(first, first + rows))
    return files


def each(file: pathlib.Path, output: pathlib.Path) -> "subprocess.Popen[str]":
    """The same by the command; a row that fails has an empty field."""
    adds = [part for name, formula in FORMULAS.items() for part in ("--add", f"{name} = {formula}")]
    return subprocess.Popen([COMMAND, "each", file, *adds, "--on-error", "empty", "-o", output],
                            stderr=subprocess.PIPE, text=True, env={**os.environ, "LC_ALL": "C.UTF-8"})
