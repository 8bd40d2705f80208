#!/usr/bin/env bash
# The Python package with the module that was built: its tests, the examples in its docstrings and in
# the document.
# usage: python.sh SOURCE BUILD [pytest's arguments...]
set -eu
source_folder=$1 build_folder=$2
shift 2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
"$source_folder/scripts/python-package" "$build_folder" "$scratch"
export PYTHONPATH=$scratch PYTHONDONTWRITEBYTECODE=1 MORANDEL_COMMAND=$build_folder/cli/morandel MORANDEL_SOURCE=$source_folder
export MORANDEL_FAILING_NEW=$build_folder/tests/libfailing_new.so
# Debian's Python, which has the packages; another may be first on the path.
if [ $# -eq 0 ]; then
    set -- -W error "$source_folder/tests/python" --ignore "$source_folder/tests/python/scale" --ignore "$source_folder/tests/python/typed.py" \
        --ignore "$source_folder/tests/python/memory.py" \
        --doctest-modules "$scratch/morandel" --doctest-glob '*.md' "$source_folder/docs/python.md" "$source_folder/docs/zh/python.md" "$source_folder/python/README.md" \
        "$source_folder/README.md" "$source_folder/README.zh.md"
fi
cd "$scratch"
exec /usr/bin/python3 -m pytest -q -p no:cacheprovider "$@"
