"""numpy and numexpr, with one thread, as contestants for columns of numbers.

usage: arrays.py numpy|numpy-out|numexpr RUNNER values | time SECONDS

RUNNER tells the formulas. numpy computes them as they are written; as numpy-out one function after the
other is called, each of which writes to an array that is there before. numexpr calls what it compiled
once, and writes to such an array too.
"""

import ast
import subprocess
import sys
import time

import numexpr
import numpy

CHECKED_ROWS = 20_000
OPERATIONS = {ast.Add: "add", ast.Sub: "subtract", ast.Mult: "multiply", ast.Div: "divide", ast.Pow: "power",
              ast.BitAnd: "logical_and", ast.Gt: "greater"}
TRUTHS = {"greater", "logical_and"}


def columns_of(rows, count):
    return [1.1 + ((i * 37 + numpy.arange(rows) * 101) % 997) / 285.0 for i in range(count)]


def numpy_calls(text):
    """The calls that compute it, and what they give: a slot each, by how deep it stands."""
    calls = []

    def slot(function, depth, *operands):
        kind = "truths" if function in TRUTHS else "numbers"
        calls.append(f"{function}({', '.join(operands)}, {kind}[{depth}])")
        return f"{kind}[{depth}]"

    def visit(node, depth):
        if isinstance(node, ast.Name | ast.Constant):
            return ast.unparse(node)
        if isinstance(node, ast.Call):
            return slot(node.func.id, depth, visit(node.args[0], depth))
        left, right, operation = ((node.left, node.comparators[0], node.ops[0])
                                  if isinstance(node, ast.Compare) else (node.left, node.right, node.op))
        if isinstance(operation, ast.Pow) and ast.unparse(right) == "2":
            return slot("square", depth, visit(left, depth))
        return slot(OPERATIONS[type(operation)], depth, visit(left, depth), visit(right, depth + 1))

    result = visit(ast.parse(text, mode="eval").body, 0)
    return calls, result


def numpy_work(text, names, columns):
    scope = dict(vars(numpy), **dict(zip(names, columns, strict=True)))
    work = eval(f"lambda: {text}", scope)
    return work, work()


def numpy_out_work(text, names, columns):
    calls, result = numpy_calls(text)
    scope = dict(vars(numpy), **dict(zip(names, columns, strict=True)))
    for kind, size in (("numbers", float), ("truths", bool)):
        count = 1 + max((int(part.split("]")[0]) for call in calls for part in call.split(f"{kind}[")[1:]), default=-1)
        scope[kind] = [numpy.empty(len(columns[0]), size) for _ in range(count)]
        for i, array in enumerate(scope[kind]):
            scope[f"{kind}{i}"] = array
    body = "; ".join(calls).replace("[", "").replace("]", "")
    exec(f"def work(): {body}", scope)
    return scope["work"], scope[result.replace("[", "").replace("]", "")]


def numexpr_work(text, names, columns):
    compiled = numexpr.NumExpr(text, [(name, numpy.double) for name in names])
    result = numpy.empty(len(columns[0]), bool if ">" in text else float)
    return lambda: compiled(*columns, out=result, ex_uses_vml=False), result


def nanoseconds(work, rows, seconds):
    work()
    block = 1
    while True:
        start = time.perf_counter()
        for _ in range(block):
            work()
        taken = time.perf_counter() - start
        if taken >= seconds:
            return taken * 1e9 / block / rows
        block = block * 8 if taken < seconds / 50 else int(block * seconds / taken * 1.05) + 1


def main():
    make = {"numpy": numpy_work, "numpy-out": numpy_out_work, "numexpr": numexpr_work}[sys.argv[1]]
    numexpr.set_num_threads(1)
    listed = subprocess.run([sys.argv[2], "columns"], check=True, text=True, capture_output=True).stdout
    for line in listed.splitlines():
        group, rows, formula, text, names = line.split("\t")
        rows, names = int(rows), names.split()
        if sys.argv[3] == "time":
            work, _ = make(text, names, columns_of(rows, len(names)))
            print(f"{group} {rows} {formula}\t{nanoseconds(work, rows, float(sys.argv[4])):.4f}")
        elif rows == CHECKED_ROWS:
            work, result = make(text, names, columns_of(rows, len(names)))
            work()
            for value in result[::7]:
                print(f"columns {formula}\t{float(value):.17g}")


main()
