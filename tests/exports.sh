#!/usr/bin/env bash
# The shared library shows every function that the public headers declare. On Linux it shows nothing
# else, and needs no library but the system's own.
set -u
source_folder=$1 build_folder=$2
declared=$(python3 "$source_folder/tests/declared_names.py" "$source_folder/include") || exit 1
[ "$(wc -l <<<"$declared")" -gt 50 ] || { printf 'too few functions are declared:\n%s\n' "$declared"; exit 1; }
library=$build_folder/Morandel10.dll
if [ -e "$library" ]; then
    # What 32-bit programs link with begins with an underscore more.
    shown=$(objdump -p "$library" | sed -n '/Ordinal\/Name Pointer/,/^$/p' | awk '{print $NF}' | sed -E 's/^_?(_Z)/\1/')
else
    library=$build_folder/libmorandel.so
    shown=$(nm -D --defined-only "$library" | awk '{print $3}')
fi
missing=$(grep -vxFf <(printf '%s\n' "$shown") <<<"$declared")
[ -z "$missing" ] || { echo "$library does not show:"; c++filt <<<"$missing"; exit 1; }
case $library in *.dll) exit 0 ;; esac

allowed='^((typeinfo|typeinfo name|vtable) for CExpressionCheck$|(CExpress|CExpressionCheck|CVariableExpress|CVariableExpressList|CCStringNode)::|morandel::[a-z_]+\(|morandel_[a-z_]+$)'
unwanted=$(c++filt <<<"$shown" | grep -vE "$allowed")
[ -z "$unwanted" ] || { printf '%s shows too much:\n%s\n' "$library" "$unwanted"; exit 1; }
# Functions of the library itself are none of hosts' business.
functions=$(c++filt <<<"$shown" | grep -E '^morandel::')
[ "$(wc -l <<<"$functions")" -eq "$(c++filt <<<"$declared" | grep -cE '^morandel::')" ] || { printf '%s shows too much:\n%s\n' "$library" "$functions"; exit 1; }
needed=$(objdump -p "$library" | awk '$1 == "NEEDED" {print $2}' | grep -vE '^(libstdc\+\+|libm|libgcc_s|libc|ld-linux.*)\.so')
[ -z "$needed" ] || { echo "$library needs $needed"; exit 1; }
