#!/usr/bin/env python3
"""Prints every formula of the case files and of the transcripts, a line each, in code page 936."""

import pathlib
import re
import shlex
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
formulas = {}
for path in sorted((ROOT / "tests/cases").glob("**/*.cases")):
    for line in path.read_text(encoding="utf-8").splitlines():
        formula, arrow, _ = line.partition(" --> ")
        if arrow:
            formula = re.sub(r"^(check|append \S+ :?=) ", "", formula.strip()).strip("«»")
            formulas[re.sub(r"\{61\*(\d+)\}", lambda match: "a" * int(match[1]), formula)] = None
for path in sorted((ROOT / "tests/transcripts").glob("*.transcript")):
    for line in path.read_text(encoding="utf-8", errors="replace").splitlines():
        if not line.startswith("$ "):
            continue
        try:
            words = shlex.split(line[2:])
        except ValueError:
            continue  # goes on in the next line
        # Whatever a word is, it can be computed.
        formulas.update(dict.fromkeys(word for word in words if "\n" not in word))
for formula in formulas:
    text = formula.encode("gbk", errors="ignore")
    text = re.sub(rb"\{([0-9A-F]{2})\}", lambda match: bytes([int(match[1], 16)]), text)
    sys.stdout.buffer.write(text.replace(b"\n", b"").replace(b"\0", b"") + b"\n")
