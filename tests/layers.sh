#!/usr/bin/env bash
# The folders stand upon one another as docs/architecture.md draws them: none includes one above it,
# and each links with nothing but itself and those below it.
set -u
source_folder=$1 build_folder=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$source_folder"
failed=0
problem() { echo "$*"; failed=1; }

# From the lowest to the highest; what stands on one line does not know its neighbours.
layers=(
    include/morandel
    base
    arithmetic
    strfuncs
    language
    engine
    "variables checker"
    formula
    "cli automation"
)

below=""
for layer in "${layers[@]}"; do
    for folder in $layer; do
        [ -d "$folder" ] || continue
        while IFS=: read -r file included; do
            case " $below $folder " in *" ${included%/*} "*) ;; *) problem "$file includes $included" ;; esac
        done < <(grep -rHoE '^ *# *include +"[^"]+/[^"]+"' --include='*.h' --include='*.cpp' "$folder" |
            sed -E 's/^([^:]+):.*"([^"]+)"$/\1:\2/')
    done
    below="$below $layer"
done
# The public headers know one another, and nothing of what is behind them.
! grep -rnE '^ *# *include *("|<(base|arithmetic|strfuncs|language|engine|variables|checker|formula)/)' include ||
    problem "a public header includes what is not installed"

for folder in */; do
    folder=${folder%/}
    ls "$folder"/*.cpp >/dev/null 2>&1 || continue
    case " $below tests fuzz benchmarks examples build " in
        *" $folder "*) ;;
        *) problem "$folder/ has no place in docs/architecture.md and in this test" ;;
    esac
done

objects=()
for layer in "${layers[@]}"; do
    added=()
    for folder in $layer; do
        case $folder in include/* | cli | automation) continue ;; esac
        found=()
        for source in "$folder"/*.cpp; do
            [ -e "$source" ] || continue
            case $source in *_windows.cpp | *_mingw.cpp) continue ;; esac
            object=$build_folder/CMakeFiles/morandel_static.dir/$source.o
            if [ -e "$object" ]; then found+=("$object"); else problem "$source is no part of the library"; fi
        done
        added+=("${found[@]}")
        g++ -shared -Wl,-z,defs "${objects[@]}" "${found[@]}" -o "$scratch/layer.so" >"$scratch/log" 2>&1 ||
            { problem "$folder/ does not link with what is below it"; grep -m 5 'undefined reference' "$scratch/log"; }
    done
    objects+=("${added[@]}")
    # The evaluator's face is complete with the engine.
    if [ "$layer" = engine ]; then
        g++ -std=c++17 -Iinclude tests/layers/evaluator.cpp "${objects[@]}" -o "$scratch/program" && "$scratch/program" ||
            problem "a program of the engine and what is below it does not work"
    fi
done
exit $failed
