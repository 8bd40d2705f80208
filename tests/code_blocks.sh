#!/usr/bin/env bash
# Compiles and runs every C++ block of the documents; each is a whole program, whose last comment
# "// prints: ..." says what it must print.
set -u
source_folder=$1 build_folder=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
passed=0 failed=0
while IFS= read -r document; do
    name=${document#"$source_folder"/}
    awk -v prefix="$scratch/${name//\//-}" \
        '/^```cpp$/ {inside = 1; ++n; next} /^```$/ {inside = 0} inside {print > (prefix "-" n ".cpp")}' "$document"
done < <(find "$source_folder"/README*.md "$source_folder/docs" -name '*.md')
for program in "$scratch"/*.cpp; do
    name=$(basename "$program" .cpp)
    expected=$(sed -n 's|^ *// prints: ||p' "$program")
    if g++ -std=c++20 -Wall -Wextra -Wpedantic -Wconversion -Werror -I"$source_folder/include" "$program" \
        -L"$build_folder" -lmorandel -Wl,-rpath,"$build_folder" -o "$scratch/program" &&
        printed=$("$scratch/program") && [ "$printed" = "$expected" ]; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        printf '%s: expected %s, printed %s\n' "$name" "$expected" "${printed-nothing}"
    fi
done
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ] && [ "$passed" -gt 0 ]
