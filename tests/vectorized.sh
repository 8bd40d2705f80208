#!/usr/bin/env bash
# Every loop over a block's rows becomes vector code, but those that call the C library: the compiler
# tells which ones do, and each must.
set -eu
source_folder=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
loops=$source_folder/engine/block_loops.h
expected=$(grep -n 'for (std::size_t i' "$loops" | cut -d: -f1 | while read -r line; do
    sed -n "$((line - 1))p" "$loops" | grep -q 'Not a vector loop' || echo "$line"
done)
compile() {  # a source, its options...
    local source=$1
    shift
    g++ -std=c++20 -O3 -ffp-contract=off -fno-math-errno -fopt-info-vec-optimized -I"$source_folder" \
        -I"$source_folder/include" "$@" -c "$source_folder/engine/$source" -o "$scratch/object" 2>&1
}
check() {
    local made
    made=$(compile "$@" | grep -oE 'block_loops.h:[0-9]+:[0-9]+: optimized: loop vectorized' | cut -d: -f2 | sort -nu)
    for line in $expected; do
        grep -qx "$line" <<<"$made" || { echo "$1: the loop in line $line of block_loops.h is no vector code"; exit 1; }
    done
}
[ "$(wc -w <<<"$expected")" -ge 6 ]
check block_kernels.cpp
check block_kernels_avx2.cpp -mavx2 -mfma
check block_kernels_avx512.cpp -mavx512f -mavx512dq -mfma -mprefer-vector-width=512
