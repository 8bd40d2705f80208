#!/usr/bin/env bash
# What of the Python package takes longer: its types, the wheel in an environment of its own, and a
# cluster on this machine.
# usage: all.sh SOURCE BUILD
set -eu
source_folder=$1 build_folder=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export PYTHONDONTWRITEBYTECODE=1

echo "types"
cd "$source_folder/python"
mypy --python-executable /usr/bin/python3 --cache-dir "$scratch/types" --no-error-summary morandel
# What a caller gets wrong is seen: each line that says so, and no other.
MYPYPATH=$PWD mypy --python-executable /usr/bin/python3 --cache-dir "$scratch/types" --strict --config-file pyproject.toml \
    --no-error-summary "$source_folder/tests/python/typed.py" | sed -n 's/^[^:]*typed.py:\([0-9]*\): error:.*/\1/p' >"$scratch/found" || true
grep -n '# wrong$' "$source_folder/tests/python/typed.py" | cut -d: -f1 >"$scratch/wanted"
[ -s "$scratch/wanted" ] && diff "$scratch/wanted" "$scratch/found"
# The stub of the module that was built is as the module is, but for the class of pybind11's classes, and
# what they have in the place of a constructor.
"$source_folder/scripts/python-package" "$build_folder" "$scratch/stubs"
printf '%s\n' morandel._core.Prepared morandel._core.Prepared.__init__ >"$scratch/allowed"
(cd "$scratch/stubs" && MYPYPATH=$PWD /usr/bin/python3 -m mypy.stubtest --mypy-config-file "$source_folder/python/pyproject.toml" \
    --allowlist "$scratch/allowed" --concise morandel._core) >"$scratch/log" ||
    { cat "$scratch/log"; exit 1; }

echo "wheel"
mkdir "$scratch/tree"
tar -C "$source_folder" --exclude=./build --exclude=./.git -c . | tar -C "$scratch/tree" -x
/usr/bin/python3 -m build --no-isolation --outdir "$scratch/wheel" "$scratch/tree/python" >"$scratch/log" 2>&1 || { tail -40 "$scratch/log"; exit 1; }
/usr/bin/python3 -m venv --system-site-packages "$scratch/environment"
"$scratch/environment/bin/pip" install --quiet --no-deps --no-index "$scratch"/wheel/*.whl
cd "$scratch"
[ "$("$scratch/environment/bin/python" -c 'import morandel; print(morandel.evaluate("preci(price * qty, 2)", price=2.675, qty=3), morandel.__version__)')" = "8.03 $(sed -n 's/^project(morandel VERSION \([0-9.]*\).*/\1/p' "$source_folder/CMakeLists.txt")" ]
rm -rf "$scratch/tree"

echo "cluster"
bash "$source_folder/tests/python.sh" "$source_folder" "$build_folder" \
    -p no:warnings "$source_folder/tests/python/scale"
