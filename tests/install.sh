#!/usr/bin/env bash
# Installs into a scratch prefix and builds a consumer against it, by find_package and by
# pkg-config, with the shared and the static library.
set -eu
source_folder=$1 build_folder=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cmake --install "$build_folder" --prefix "$scratch/prefix" >"$scratch/log" || { cat "$scratch/log"; exit 1; }

cmake -G Ninja -S "$source_folder/tests/consumer" -B "$scratch/build" -DCMAKE_PREFIX_PATH="$scratch/prefix" >"$scratch/log" 2>&1 &&
    cmake --build "$scratch/build" >>"$scratch/log" 2>&1 || { cat "$scratch/log"; exit 1; }
for program in consumer consumer_static; do
    printed=$("$scratch/build/$program")
    [ "$printed" = 2.68 ] || { echo "$program printed $printed"; exit 1; }
done

export PKG_CONFIG_PATH=$scratch/prefix/lib/pkgconfig:$scratch/prefix/lib/$(g++ -print-multiarch)/pkgconfig
[ "$(pkg-config --modversion morandel)" = 10.0.0 ]
g++ "$source_folder/tests/consumer/main.cpp" $(pkg-config --cflags --libs morandel) -o "$scratch/program"
printed=$(LD_LIBRARY_PATH=$(pkg-config --variable=libdir morandel) "$scratch/program")
[ "$printed" = 2.68 ] || { echo "the pkg-config program printed $printed"; exit 1; }

[ "$("$scratch/prefix/bin/morandel" 'preci(2.675, 2)')" = 2.68 ]
