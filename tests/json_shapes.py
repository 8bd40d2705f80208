#!/usr/bin/env python3
"""Prints the shape of all that the command on PATH writes as JSON: members in order, with their types.

A list is shown by the shapes of its items, each once.
"""

import json
import subprocess

RUNS = [
    ("a number", ["eval", "--json", "1+2"], ""),
    ("a text", ["eval", "--json", 'strcat("a", "b")'], ""),
    ("a number without digits", ["eval", "--json", "10^400"], ""),
    ("a fault of evaluation", ["eval", "--json", "1/0"], ""),
    ("a fault of grammar", ["eval", "--json", "1+"], ""),
    ("a name without value", ["eval", "--json", "x+1"], ""),
    ("a warning", ["eval", "--json", "1;2"], ""),
    ("lines", ["--json"], "1\n1/0\n"),
    ("vars", ["vars", "--json", "a like b"], ""),
    ("check, good", ["check", "--json", "1+2"], ""),
    ("check, faults", ["check", "--json", 'sqrt("a")'], ""),
    ("check, grammar", ["check", "--json", "1+"], ""),
    ("functions", ["functions", "--json"], ""),
    ("one function", ["functions", "--json", "r2s"], ""),
    ("errors", ["errors", "--json"], ""),
    ("one error", ["errors", "--json", "38"], ""),
    ("calc", ["calc", "--json"], "a = 1\nb := a*2\nt := r2s(b, 1)\n"),
    ("calc, faults", ["calc", "--json"], "a := 1/0\nb := a+1\nc := x\n"),
    ("calc, one value", ["calc", "--json", "--get", "b"], "a = 1\nb := a*2\n"),
    ("each", ["each", "--json", "--add", "c = a+1", "--add", 't = strcat(b, "!")'], "a,b\n1,x\n"),
]


def shape(value):
    if isinstance(value, dict):
        return "{" + ", ".join(f"{name}: {shape(member)}" for name, member in value.items()) + "}"
    if isinstance(value, list):
        return "[" + " | ".join(dict.fromkeys(shape(item) for item in value)) + "]"
    return {str: "text", bool: "truth", int: "number", float: "number", type(None): "null"}[type(value)]


def values(text):
    """One value, or one a line."""
    try:
        return [json.loads(text)]
    except json.JSONDecodeError:
        return [json.loads(line) for line in text.splitlines()]


for title, arguments, given in RUNS:
    run = subprocess.run(["morandel", *arguments], input=given, capture_output=True, text=True, check=False)
    print(f"{title}: morandel {' '.join(arguments)}")
    for line in dict.fromkeys(shape(value) for value in values(run.stdout)):
        print(f"    {line}")
