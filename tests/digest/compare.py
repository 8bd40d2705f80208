#!/usr/bin/env python3
"""Compares files of outcomes that the digest has written, the first with each other one.

Says how many numbers differ and by how many last places at most, and shows the first formulas whose
outcomes differ in anything else.
usage: compare.py FILE FILE...
"""

import pathlib
import re
import struct
import sys

NUMBER = re.compile(rb"(?<= )[0-9a-f]{16}(?= )")


def records(path):
    return [record.split(b"\t", 1) for record in pathlib.Path(path).read_bytes().split(b"\n")[:-1]]


def places_between(a, b):
    """How many doubles lie between two; none where both are zero but for what rounding leaves."""
    numbers = [struct.unpack(">d", bytes.fromhex(bits.decode()))[0] for bits in (a, b)]
    if all(abs(number) < 1e-12 for number in numbers):
        return 0
    places = [struct.unpack(">q", struct.pack(">d", abs(number)))[0] * (-1 if number < 0 else 1) for number in numbers]
    return abs(places[0] - places[1])


first = records(sys.argv[1])
for path in sys.argv[2:]:
    other = records(path)
    near, farthest, else_different = 0, 0, []
    if len(first) != len(other):
        sys.exit(f"{path} has {len(other)} outcomes, not {len(first)}")
    for (formula, a), (same_formula, b) in zip(first, other):
        if formula != same_formula:
            sys.exit(f"{path} computes {same_formula!r}, not {formula!r}")
        if a == b:
            continue
        distance = [places_between(x, y) for x, y in zip(NUMBER.findall(a), NUMBER.findall(b))]
        if NUMBER.sub(b"", a) == NUMBER.sub(b"", b) and distance:
            near += 1
            farthest = max(farthest, *distance)
        else:
            else_different.append((formula, a, b))
    print(f"{pathlib.Path(path).name}: {near} of {len(first)} numbers differ, by {farthest} last places at most; "
          f"{len(else_different)} outcomes differ otherwise")
    for formula, a, b in else_different[:10]:
        print(f"    {formula!r}\n        {a!r}\n        {b!r}")
