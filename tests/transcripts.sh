#!/usr/bin/env bash
# Replays shell sessions: the blocks fenced as console in the documents, and tests/transcripts/, some files
# side by side.
# A line that begins with "$ " is run, in a scratch folder of the file's with the morandel command on the path;
# the lines up to the next one are all that it prints, standard error included, and "[exit N]" is
# its exit status where that is not 0.
set -u
source_folder=$1 build_folder=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export LC_ALL=C.UTF-8 SOURCE_FOLDER=$source_folder
windows=''
if [ -e "$build_folder/cli/morandel.exe" ]; then
    mkdir "$scratch/bin"
    printf '#!/bin/sh\nexec "%s/scripts/wine" "%s/cli/morandel.exe" "$@"\n' "$source_folder" "$build_folder" >"$scratch/bin/morandel"
    chmod +x "$scratch/bin/morandel"
    export PATH="$scratch/bin:$PATH" MORANDEL_LANG=en
    windows=yes
else
    export PATH="$build_folder/cli:$PATH"
fi
passed=0 failed=0

run_one() {  # file, command, expected
    local output status
    # What is printed may or may not end with the end of a line.
    output=$(cd "$folder" && bash -c "$2" 2>&1 </dev/null; printf '\n[exit %s]' "$?")
    status=${output##*$'\n'}
    output=${output%$'\n'"$status"}
    output=${output%$'\n'}
    if [ "$status" != "[exit 0]" ]; then output+=${output:+$'\n'}$status; fi
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

sessions() {  # file
    case $1 in
        *.md) awk '/^```console$/ {inside = 1; next} /^```$/ {inside = 0} inside' "$1" ;;
        *) cat "$1" ;;
    esac
}
play() {  # file, where it may write: what fails goes to .log, how many passed and failed to .count
    local folder=$2
    mkdir "$folder"
    replay "$1" < <(sessions "$1") >"$folder.log"
    echo "$passed $failed" >"$folder.count"
}

number=100
for file in "$source_folder"/tests/transcripts/*.transcript "$source_folder"/README*.md $(find "$source_folder/docs" -name '*.md'); do
    case $file in */unix.transcript) [ -z "$windows" ] || { echo "not for Windows: $file"; continue; } ;; esac
    while [ "$(jobs -rp | wc -l)" -ge "$(nproc)" ]; do wait -n; done
    number=$((number + 1))
    play "$file" "$scratch/$number" &
done
wait
cat "$scratch"/*.log
read -r passed failed < <(awk '{passed += $1; failed += $2} END {print passed, failed}' "$scratch"/*.count)

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ] && [ "$passed" -gt 20 ] && [ "$(ls "$scratch"/*.count | wc -l)" -eq $((number - 100)) ]
