#!/usr/bin/env python3
"""Makes one script of modules: of their imports from one another nothing is left."""

import re
import sys


def bundle(files):
    parts = []
    declared = {}
    for file in files:
        with open(file, encoding="utf-8") as source:
            text = source.read()
        text = re.sub(r'^import [^;]*? from "\./[^"]*";\n', "", text, flags=re.M)
        text = re.sub(r"^export (?=async |function|const|class|let)", "", text, flags=re.M)
        # They share one scope now.
        for name in re.findall(r"^(?:async )?(?:function|const|class|let) (\w+)", text, flags=re.M):
            if name in declared:
                raise SystemExit(f"{file}: {name} is declared in {declared[name]} too")
            declared[name] = file
        parts.append(text)
    return "\n".join(parts)


if __name__ == "__main__":
    sys.stdout.write(bundle(sys.argv[1:]))
