#!/usr/bin/env bash
# What hosts and scripts hold on to is as the files of tests/interfaces say: names that the library
# shows, declarations of the C header, shapes of what the command prints as JSON, signatures of the
# Python package where it was built. A change that is meant is written there with --update, so that it
# is seen.
# usage: interfaces.sh SOURCE BUILD [--update]
set -u
source_folder=$1 build_folder=$2 update=${3:-}
kept=$source_folder/tests/interfaces
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
failed=0

same() {  # name of the file; its text as it is now comes in
    cat >"$scratch/$1"
    [ -s "$scratch/$1" ] || { echo "FAILED: $1 would be empty"; failed=1; }
    if [ "$update" = --update ]; then cp "$scratch/$1" "$kept/$1"; return; fi
    diff -u "$kept/$1" "$scratch/$1" || { echo "FAILED: $1 is another; if that is meant: tests/interfaces.sh $source_folder $build_folder --update"; failed=1; }
}
exported() { objdump -p "$1" | sed -n '/Ordinal\/Name Pointer/,/^$/p' | awk 'NR > 1 && NF > 2 && $1 ~ /^\[/ {print $NF}' | sed -E 's/^_?(_Z)/\1/' | c++filt | LC_ALL=C sort; }

if [ -e "$build_folder/Morandel10.dll" ]; then
    case $(objdump -f "$build_folder/Morandel10.dll") in *x86-64*) kind=x64 ;; *) kind=x86 ;; esac
    exported "$build_folder/Morandel10.dll" | same "windows-$kind.symbols"
    exit $failed
fi
nm -D --defined-only "$build_folder/libmorandel.so" | awk '{print $3}' | c++filt | LC_ALL=C sort | same linux.symbols
sed '/# *include/d' "$source_folder/include/morandel/c.h" | g++ -w -fpreprocessed -dD -E -P -x c - | same c.declarations
PATH=$build_folder/cli:$build_folder:$PATH LC_ALL=C.UTF-8 python3 "$source_folder/tests/json_shapes.py" | same json.shapes
if compgen -G "$build_folder/python/_core*.so" >/dev/null; then
    "$source_folder/scripts/python-package" "$build_folder" "$scratch"
    PYTHONPATH=$scratch PYTHONDONTWRITEBYTECODE=1 /usr/bin/python3 "$source_folder/tests/python_signatures.py" | same python.signatures
fi
exit $failed
