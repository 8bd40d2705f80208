#!/usr/bin/env bash
# Compiles the package's examples in the languages that Debian has compilers for, as their first lines
# tell, and runs them under Wine. The library must be registered.
# usage: languages.sh FOLDER x64|x86 SCRATCH, with WINE_RUNNER; FOLDER holds the unpacked package
set -u
folder=$1 kind=$2
scratch=$3/languages
mkdir "$scratch"
failed=0
problem() { echo "FAILED: $*"; failed=1; }
case $kind in x64) processor=x86_64 ;; x86) processor=i686 ;; esac
# What the examples of the object print, and those of the C interface.
of_object='total = 37.5'
prepared='total = 37.5
totals = 12.5, 25, 50
character 10: a ) is missing'
expect_printed() {  # program, what
    local printed
    printed=$(cd "$scratch" && timeout 60 "$WINE_RUNNER" "./$1" 2>&1 | tr -d '\r')
    [ "$printed" = "$2" ] || problem "$1 prints '$printed'"
}
warnings='-Wall -Wextra -Wpedantic -Wconversion -Werror'
compile() {  # example, its import library if that is another: by the line in its comment
    local command
    command=$(sed -n 's|^[ /]*\(x86_64-w64-mingw32-g.*\)|\1|p' "$folder/examples/$1")
    command=${command/#x86_64-w64-mingw32-g++ /x86_64-w64-mingw32-g++-posix }
    command=${command/#x86_64-w64-mingw32-gcc /x86_64-w64-mingw32-gcc-posix }
    command=${command/#x86_64/$processor}
    [ $# -eq 1 ] || command=${command/-lMorandel10/../lib/$2}
    (cd "$folder/examples" && $command $warnings -o "$scratch/${1%.*}.exe") || problem "$1: $command"
}
cp "$folder/bin/Morandel10.dll" "$scratch"
for example in example.c late_bound.cpp linked.cpp; do
    compile $example
    expect_printed "${example%.*}.exe" "$of_object"
done
# The other import library, of the form that Windows' tools give theirs.
compile linked.cpp Morandel10.lib
expect_printed linked.exe "$of_object"
for example in prepared.c prepared.cpp; do
    compile $example
    expect_printed prepared.exe "$prepared"
done
# Another compiler, which has no runtime of its own for Windows here.
clang --target=$processor-w64-mingw32 -std=c90 $warnings -I "$folder/include" -c "$folder/examples/prepared.c" -o "$scratch/clang.o" &&
    $processor-w64-mingw32-gcc-posix "$scratch/clang.o" "$folder/lib/Morandel10.lib" -o "$scratch/clang.exe" || problem "prepared.c with clang"
expect_printed clang.exe "$prepared"

# C# is compiled only: Debian has no .NET that runs under Wine. (Prepared.cs runs on Linux.)
for example in Example Prepared; do
    mcs -warnaserror -r:Microsoft.CSharp -out:"$scratch/$example.exe" "$folder/examples/$example.cs" || problem "$example.cs"
done

# Free Pascal: Debian has the compiler for 64-bit Windows, and the source of its units.
if [ "$kind" = x64 ]; then
    sources=$(ls -d /usr/share/fpcsrc/*/rtl | head -1)
    pascal="$(ls /usr/bin/ppcx64 /usr/lib/*/fpc/*/ppcx64 2>/dev/null | head -1) -n -Twin64 -Fu$scratch/units -v0e"
    mkdir "$scratch/units"
    folders=$(printf -- "-Fi$sources/%s " inc x86_64 win win64 objpas)
    $pascal $folders -FU"$scratch/units" -Us -Sg "$sources/win64/system.pp" >"$scratch/log" 2>&1 || cat "$scratch/log"
    for unit in objpas/objpas win64/sysinit inc/fpintres; do
        $pascal $folders -FU"$scratch/units" "$sources/$unit.pp" >"$scratch/log" 2>&1 || cat "$scratch/log"
    done
    for example in example prepared; do
        $pascal -FU"$scratch" -FE"$scratch" -o$example-pas.exe "$folder/examples/$example.pas" >"$scratch/log" 2>&1 || { problem $example.pas; cat "$scratch/log"; }
    done
    expect_printed example-pas.exe "$of_object"
    expect_printed prepared-pas.exe "$prepared"
fi
exit $failed
