#!/usr/bin/env bash
# Replays shell sessions: the blocks fenced as console in the documents, and tests/transcripts/.
# A line that begins with "$ " is run, in a scratch folder with the morandel command on the path;
# the lines up to the next one are all that it prints, standard error included, and "[exit N]" is
# its exit status where that is not 0.
set -u
source_folder=$1 build_folder=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export LC_ALL=C.UTF-8
windows=''
if [ -e "$build_folder/cli/morandel.exe" ]; then
    mkdir "$scratch/bin"
    printf '#!/bin/sh\nexec "%s/scripts/wine" "%s/cli/morandel.exe" "$@"\n' "$source_folder" "$build_folder" >"$scratch/bin/morandel"
    chmod +x "$scratch/bin/morandel"
    export PATH="$scratch/bin:$PATH"
    windows=yes
else
    export PATH="$build_folder/cli:$PATH"
fi
passed=0 failed=0

run_one() {  # file, command, expected
    local output status
    output=$(cd "$scratch" && bash -c "$2" 2>&1 </dev/null; echo "[exit $?]")
    status=${output##*$'\n'}
    if [ "$status" = "[exit 0]" ]; then output=${output%"$status"}; output=${output%$'\n'}; fi
    if [ "$output" = "$3" ]; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        printf '%s: $ %s\nexpected:\n%s\nprinted:\n%s\n\n' "$1" "$2" "$3" "$output"
    fi
}

replay() {  # file; its sessions on standard input
    local line command='' expected=''
    while IFS= read -r line; do
        if [ "${line:0:2}" = '$ ' ]; then
            [ -n "$command" ] && run_one "$1" "$command" "${expected%$'\n'}"
            command=${line:2} expected=''
        elif [ "${line:0:1}" != '#' ]; then
            expected+=$line$'\n'
        fi
    done
    [ -n "$command" ] && run_one "$1" "$command" "${expected%$'\n'}"
}

while IFS= read -r document; do
    replay "$document" < <(awk '/^```console$/ {inside = 1; next} /^```$/ {inside = 0} inside' "$document")
done < <(find "$source_folder/README.md" "$source_folder/docs" -name '*.md')
for file in "$source_folder"/tests/transcripts/*.transcript; do
    case $file in */unix.transcript) [ -z "$windows" ] || { echo "not for Windows: $file"; continue; } ;; esac
    replay "$file" <"$file"
done

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ] && [ "$passed" -gt 20 ]
