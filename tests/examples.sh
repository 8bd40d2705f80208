#!/usr/bin/env bash
# Compiles and runs, on Linux, the examples that stand on the C interface, by the commands that they tell,
# where the library is installed.
# usage: examples.sh SOURCE BUILD
set -u
source_folder=$1 build_folder=$2
failed=0
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cmake --install "$build_folder" --prefix "$scratch/prefix" >"$scratch/log" || { cat "$scratch/log"; exit 1; }
libraries=$(dirname "$(find "$scratch/prefix" -name libmorandel.so)")
export LD_LIBRARY_PATH=$libraries PKG_CONFIG_PATH=$libraries/pkgconfig
cd "$(dirname "$(find "$scratch/prefix" -name prepared.py)")" || exit 1

expect_totals() {  # example, command...
    local example=$1 printed
    shift
    printed=$("$@" 2>&1)
    [ "$printed" = 'total = 37.5
totals = 12.5, 25, 50
character 10: a ) is missing' ] || { echo "FAILED: $example prints '$printed'"; failed=1; }
}

# The line of the comment, warnings being faults.
for example in prepared.c prepared.cpp; do
    command=$(sed -n 's,^[ /]*\(c[c+]* .*prepared\..*\),\1,p' $example)
    eval "$command -Wall -Wextra -Wpedantic -Wconversion -Werror -o '$scratch/program'" || { echo "FAILED: $command"; failed=1; }
    expect_totals $example "$scratch/program"
    rm -f "$scratch/program"
done

expect_totals prepared.py python3 prepared.py libmorandel.so.10

fpc -v0ew -Fl"$libraries" -FE"$scratch" prepared.pas >"$scratch/log" 2>&1 || { cat "$scratch/log"; failed=1; }
expect_totals prepared.pas "$scratch/prepared"

mcs -warnaserror -out:"$scratch/Prepared.exe" Prepared.cs || failed=1
cp Prepared.exe.config "$scratch"
expect_totals Prepared.cs mono "$scratch/Prepared.exe"
exit $failed
