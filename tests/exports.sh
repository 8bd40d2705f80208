#!/usr/bin/env bash
# The shared library shows the exported names and nothing else, and needs no library but the
# system's own.
set -u
library=$2/libmorandel.so
allowed='^((typeinfo|typeinfo name|vtable) for CExpressionCheck$|(CExpress|CExpressionCheck|CVariableExpress|CVariableExpressList|CCStringNode)::|morandel::(functions|find_function|error_table|error_message|number_to_text)\()'
shown=$(nm -DC --defined-only "$library" | sed -E 's/^[0-9a-f]+ [A-Za-z] //')
unwanted=$(grep -vE "$allowed" <<<"$shown")
if [ -n "$unwanted" ]; then
    printf 'libmorandel.so shows too much:\n%s\n' "$unwanted"
    exit 1
fi
for name in 'CExpress::SetExpression(char const\*)' 'CExpress::GetStatu()' 'CExpress::CExpress()' \
    'CExpressionCheck::CheckExpression(char const\*)' 'CVariableExpressList::Cal()' \
    'CCStringNode::CCStringNode(char const\*)' 'morandel::number_to_text(double'; do
    grep -q "^$name" <<<"$shown" || { echo "libmorandel.so does not show $name"; exit 1; }
done
needed=$(objdump -p "$library" | awk '$1 == "NEEDED" {print $2}' | grep -vE '^(libstdc\+\+|libm|libgcc_s|libc|ld-linux.*)\.so')
[ -z "$needed" ] || { echo "libmorandel.so needs $needed"; exit 1; }
