#!/usr/bin/env bash
# Keeps true what docs/architecture.md says of additions: on a copy of the sources, a function, an
# operator and an error take a row and a body and no more, everything knows them, and a code or a
# number that is taken does not compile.
set -eu
source_folder=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
copy=$scratch/sources
mkdir "$copy"
cd "$source_folder"
for folder in include cmake automation base arithmetic strfuncs language engine variables checker formula; do
    [ ! -d "$folder" ] || cp -r "$folder" "$copy"
done
cp CMakeLists.txt "$copy"
cd "$copy"

row() {  # file, table, text: a row at the end of that table
    table=$2 text=$3 awk '
        index($0, ENVIRON["table"]) {inside = 1}
        inside && /^};/ {print "    " ENVIRON["text"]; inside = 0; ++added}
        {print}
        END {exit added != 1}' "$1" >"$scratch/file" || { echo "there is no table '$2' in $1"; exit 1; }
    cp "$scratch/file" "$1"
}
body() {  # file, text: at the end of the namespace
    text=$2 awk '/^}  \/\/ namespace morandel$/ {print ENVIRON["text"]; ++added} {print} END {exit added != 1}' "$1" >"$scratch/file" ||
        { echo "there is no namespace in $1"; exit 1; }
    cp "$scratch/file" "$1"
}

# A function of one number: a row and a body.
row language/functions.cpp 'FunctionRow function_table[]' \
    '{{"cube", '"'k'"', "n", 1, "", "x", "third power", "cube(2)"}, cube},'
body arithmetic/functions.h 'inline Error cube(double& x) {
    if (x > 1e100) return Error::cube_too_large;
    x = x * x * x;
    return Error::none;
}'

# A function of texts: a row and a body.
row language/functions.cpp 'FunctionRow function_table[]' \
    '{{"twice", '"'W'"', "t", 2, "", "text", "text and itself", "twice(\"ab\")"}, twice, {.result_kind = kind_text}},'
body strfuncs/routines.h 'Error twice(Call& call);'
body strfuncs/joining.cpp 'Error twice(Call& call) {
    const std::string text(call.value.text);
    return call.give_copy(text + text);
}'

# A word between texts, and a sign between numbers: a row each, and what they do.
row language/operators.h 'Operator operator_table[]' \
    '{"lacks", '"'B'"', Level::relation, nullptr, lacks, Error::nothing_after_like, 0, 2, 2},'
row language/operators.h 'Operator operator_table[]' \
    '{"#", '"'#'"', Level::product, average, nullptr, Error::nothing_after_product},'
body arithmetic/operators.h 'inline bool lacks(std::string_view text, std::string_view piece) {
    return !contains(text, piece);
}
inline Error average(double& left, double right) {
    left = (left + right) / 2.0;
    return Error::none;
}'

# An error: its name and number, and its row.
row include/morandel/errors.h 'enum class ErrorNumber' 'cube_too_large = 80,'
row base/errors.cpp 'ErrorText errors[]' '{Error::cube_too_large, gbk<U"数值为空">, "too large to be cubed"},'

settings="-G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O0 -DMORANDEL_BUILD_TESTS=OFF -DMORANDEL_BUILD_COMMAND=OFF"
cmake -S . -B build $settings >"$scratch/log" 2>&1 && cmake --build build --target morandel_static >>"$scratch/log" 2>&1 &&
    g++ -std=c++17 -DMORANDEL_STATIC -Iinclude "$source_folder/tests/additions/added.cpp" -Lbuild -lmorandel -o program >>"$scratch/log" 2>&1 ||
    { tail -40 "$scratch/log"; exit 1; }
! grep -A5 'warning:' "$scratch/log" || exit 1
./program

refused() {  # file, what the compiler says
    ! g++ -std=c++20 -fsyntax-only -DMORANDEL_STATIC -I. -Iinclude "$1" 2>"$scratch/log" ||
        { echo "$1 compiles, but should not: $2"; exit 1; }
    grep -q "$2" "$scratch/log" || { echo "$1 does not compile, but not because $2"; cat "$scratch/log"; exit 1; }
}
cp language/functions.cpp language/operators.h base/errors.cpp "$scratch"
for taken in s '#'; do
    row language/functions.cpp 'FunctionRow function_table[]' \
        '{{"other", '"'$taken'"', "n", 1, "", "x", "", ""}, cube},'
    refused language/functions.cpp 'a code stands twice'
    cp "$scratch/functions.cpp" language
done
row language/operators.h 'Operator operator_table[]' '{"xor", '"'B'"', Level::relation, apply<std::not_equal_to<>>, nullptr, Error::none},'
refused language/functions.cpp 'two operators of one code'
row base/errors.cpp 'ErrorText errors[]' '{Error::out_of_range, gbk<U"数值为空">, ""},'
refused base/errors.cpp 'no number twice'
