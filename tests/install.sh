#!/usr/bin/env bash
# Installs into a scratch prefix and builds hosts against it, which know nothing else: with each
# compiler that there is for the system, as C++17 and as C++20, with the shared and with the static
# library, without a warning. Each runs. On Linux also by find_package and by pkg-config.
# usage: install.sh SOURCE BUILD linux|x64|x86
set -eu
source_folder=$1 build_folder=$2 kind=$3
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
prefix=$scratch/prefix
cmake --install "$build_folder" --prefix "$prefix" >"$scratch/log" || { cat "$scratch/log"; exit 1; }

strict="-Wall -Wextra -Wpedantic -Werror"
case $kind in
    linux)
        compilers="g++ clang++"
        libraries=$(dirname "$(find "$prefix" -name libmorandel.so)")
        shared="-L$libraries -lmorandel -Wl,-rpath,$libraries" static="-DMORANDEL_STATIC $libraries/libmorandel.a"
        runner="" ;;
    x64 | x86)
        [ "$kind" = x64 ] && compilers=x86_64-w64-mingw32-g++-posix || compilers=i686-w64-mingw32-g++-posix
        shared="-static $prefix/lib/libMorandel10.dll.a" static="-static -DMORANDEL_STATIC $prefix/lib/libmorandel.a"
        cp "$prefix/bin/Morandel10.dll" "$scratch"
        runner="bash $source_folder/scripts/wine" ;;
esac

expect_host() {  # program
    local printed
    printed=$($runner "$1" | tr -d '\r') || true
    [ "$printed" = "2.68 total 37.5 sqrt abc" ] || { echo "${2:-$1} printed $printed"; exit 1; }
}

for compiler in $compilers; do
    command -v "$compiler" >/dev/null || { echo "there is no $compiler; scripts/install-packages installs it"; exit 1; }
    for standard in 17 20; do
        # Each header is enough for itself.
        find "$prefix/include" -name '*.h' ! -path '*/automation/*' | while read -r header; do
            echo "#include <${header#"$prefix/include/"}>" |
                "$compiler" -std=c++$standard $strict -I "$prefix/include" -fsyntax-only -x c++ - ||
                { echo "${header##*/} does not compile alone, as C++$standard with $compiler"; exit 1; }
        done
        for library in shared static; do
            "$compiler" -std=c++$standard $strict -I "$prefix/include" "$source_folder/tests/consumer/main.cpp" \
                ${!library} -o "$scratch/host.exe" || { echo "no host with $compiler, C++$standard, $library"; exit 1; }
            expect_host "$scratch/host.exe" "the host of $compiler, C++$standard, $library"
        done
    done
done
[ "$kind" = linux ] || exit 0

cmake -G Ninja -S "$source_folder/tests/consumer" -B "$scratch/build" -DCMAKE_PREFIX_PATH="$prefix" >"$scratch/log" 2>&1 &&
    cmake --build "$scratch/build" >>"$scratch/log" 2>&1 || { cat "$scratch/log"; exit 1; }
for program in consumer consumer_static; do expect_host "$scratch/build/$program"; done

export PKG_CONFIG_PATH=$libraries/pkgconfig
[ "$(pkg-config --modversion morandel)" = "$(sed -n 's/^project(morandel VERSION \([0-9.]*\).*/\1/p' "$source_folder/CMakeLists.txt")" ]
g++ "$source_folder/tests/consumer/main.cpp" $(pkg-config --cflags --libs morandel) -Wl,-rpath,"$libraries" -o "$scratch/program"
expect_host "$scratch/program" "the pkg-config program"

# A host in C, with the static library.
cat >"$scratch/host.c" <<'EOF'
#include <stdio.h>
#include <morandel/c.h>
int main(void) {
    morandel_result* result = morandel_result_create();
    if (!morandel_evaluate("strcat(\"2.\", \"68\")", MORANDEL_TERMINATED, NULL, NULL, 0, result, NULL)) return 1;
    puts(morandel_result_text(result, NULL));
    morandel_result_free(result);
    return 0;
}
EOF
cat >"$scratch/CMakeLists.txt" <<'EOF'
cmake_minimum_required(VERSION 3.25)
project(host LANGUAGES C)
find_package(morandel 10 REQUIRED)
add_executable(host host.c)
target_link_libraries(host PRIVATE morandel::static)
EOF
cmake -G Ninja -S "$scratch" -B "$scratch/build-c" -DCMAKE_PREFIX_PATH="$prefix" >"$scratch/log" 2>&1 &&
    cmake --build "$scratch/build-c" >>"$scratch/log" 2>&1 || { cat "$scratch/log"; exit 1; }
[ "$("$scratch/build-c/host")" = 2.68 ]
mkdir "$scratch/static"
cp "$libraries/libmorandel.a" "$scratch/static"
gcc "$scratch/host.c" $(pkg-config --cflags morandel) -L"$scratch/static" $(pkg-config --static --libs-only-l morandel) -o "$scratch/program"
[ "$("$scratch/program")" = 2.68 ]

[ "$("$prefix/bin/morandel" 'preci(2.675, 2)')" = 2.68 ]
