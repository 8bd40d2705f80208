"""Prints the linker's name of every function that the public headers declare and do not define.

usage: declared_names.py INCLUDE_FOLDER
"""

import json
import pathlib
import re
import subprocess
import sys


def syntax_trees(folder):
    headers = sorted(folder.rglob("*.h"))
    source = "".join(f"#include <{header.relative_to(folder)}>\n" for header in headers)
    # What is looked for: namespaces, and classes that stand in none.
    names = set()
    for header in headers:
        names |= set(re.findall(r"^(?:namespace|(?:class|struct)(?: MORANDEL_EXPORT)?) (\w+)", header.read_text(), re.M))
    for name in sorted(names):
        tree = subprocess.run(
            ["clang++", "-std=c++17", "-I", folder, "-fsyntax-only", "-x", "c++", "-", "-Xclang", "-ast-dump=json",
             "-Xclang", "-ast-dump-filter", "-Xclang", name],
            input=source, check=True, text=True, capture_output=True).stdout
        decoder, at = json.JSONDecoder(), 0
        while at < len(tree):
            node, at = decoder.raw_decode(tree, at)
            yield node
            while at < len(tree) and tree[at].isspace():
                at += 1


def declared(node):
    if node.get("kind", "").endswith("TemplateDecl"):
        return
    parts = node.get("inner", [])
    if "mangledName" in node and node["kind"] != "VarDecl":
        written = not node.get("isImplicit") and "explicitlyDeleted" not in node and "explicitlyDefaulted" not in node
        if written and not any(part.get("kind") == "CompoundStmt" for part in parts):
            yield node["mangledName"]
        return
    for part in parts:
        yield from declared(part)


names = {name for tree in syntax_trees(pathlib.Path(sys.argv[1])) for name in declared(tree)}
print("\n".join(sorted(names)))
