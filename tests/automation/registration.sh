#!/usr/bin/env bash
# Registration on a machine with a history: both packages side by side, files that were moved, keys
# of others, the machine's beside the user's. Every step ends with all that the registry holds.
# usage: registration.sh SOURCE BUILD
set -u
source_folder=$1 build_folder=$2
wine=$source_folder/scripts/wine
failed=0
scratch=$(mktemp -d)
# A prefix of its own, new even where one is left by a run that was interrupted.
export WINEPREFIX=$build_folder/wine-registration
end() { "$wine" --end; rm -rf "$WINEPREFIX"; }
end
trap 'end; rm -rf "$scratch"' EXIT
problem() { echo "FAILED: $*"; failed=$((failed + 1)); }

declare -A system=([x64]='C:\windows\system32' [x86]='C:\windows\syswow64') modules
for kind in x64 x86; do
    package=$(ls "$source_folder"/build/package/morandel-*-windows-$kind.zip) || { echo "no package; run ./package"; exit 1; }
    mkdir "$scratch/$kind"
    modules[$kind]=$scratch/$kind/Morandel10.dll
    unzip -q -j -d "$scratch/$kind" "$package" '*/bin/Morandel10.dll'
done
registrar() {  # kind, options of regsvr32..., folder
    local kind=$1
    shift
    "$wine" "${system[$kind]}\\regsvr32.exe" /s "${@:1:$#-1}" "$(windows_path "$scratch/${*: -1}/Morandel10.dll")" >/dev/null 2>&1
}
remove_later_version() { "$wine" "${system[x64]}\\reg.exe" delete "HKCR\\TypeLib\\$type_library" /f >/dev/null 2>&1; }
add() { "$wine" "${system[x64]}\\reg.exe" add "$@" /f >/dev/null 2>&1; }
expect_object() {  # kind, what
    local printed
    echo 'Set o = CreateObject("Morandel10.ComExpress") : o.SetValue 0, "a", 0, "6*7" : WScript.Echo o.GetValue("a")' >"$scratch/object.vbs"
    printed=$(cd "$scratch" && "$wine" "${system[$1]}\\cscript.exe" //nologo object.vbs 2>/dev/null | tr -d '\r')
    [ "$printed" = 42 ] || problem "$2: no $1 object: $printed"
}

. "$source_folder/tests/automation/registry.sh"
expect_state "nothing is there to begin with" ''
both=$(expected_keys HKLM x64 x86)

# The one, the other, both in either order, and one after the other away again.
for kind in x64 x86; do
    other=$([ $kind = x64 ] && echo x86 || echo x64)
    registrar $kind $kind || problem "$kind is not registered"
    expect_state "$kind alone" "$(expected_keys HKLM $kind)"
    registrar $kind $kind || problem "$kind is not registered twice"
    expect_state "$kind twice" "$(expected_keys HKLM $kind)"
    registrar $other $other
    expect_state "$other after $kind" "$both"
    registrar $other /u $other || problem "$other is not removed"
    expect_state "$other is gone, $kind is there" "$(expected_keys HKLM $kind)"
    expect_object $kind "after $other is gone"
    registrar $other $other
    registrar $kind /u $kind || problem "$kind is not removed"
    expect_object $other "after $kind is gone"
    registrar $other /u $other || problem "$other, the last, is not removed"
    expect_state "both are gone, $other last" ''
done

# A file that was moved is taken away from where it is now.
for kind in x64 x86; do
    registrar $kind $kind
    mv "$scratch/$kind" "$scratch/moved"
    registrar $kind /u moved || problem "a moved $kind is not removed"
    expect_state "a moved $kind is gone" ''
    mv "$scratch/moved" "$scratch/$kind"
done

# Keys of somebody else below those of the library, and a later version of the type library.
registrar x64 x64
for key in Morandel10.ComExpress Morandel10.ComExpress.1; do add "HKCR\\$key\\Somebody\\Else" /ve /d here; done
add "HKCR\\CLSID\\$class\\Somebody\\Else" /ve /d here
add "HKCR\\TypeLib\\$type_library\\2.0" /ve /d later
registrar x64 /u x64 || problem "keys of somebody else hinder the removal"
expect_state "only the later version is left" "HKLM TypeLib\\$type_library
HKLM TypeLib\\$type_library\\2.0
HKLM TypeLib\\$type_library\\2.0 @=later"
remove_later_version

# For the user alone. Wine has one view of the user's classes, so there the kinds are one class.
for kind in x64 x86; do
    registrar $kind /n /i:user $kind || problem "$kind is not registered for the user"
    expect_state "$kind for the user" "$(expected_keys HKCU $kind)"
    registrar $kind /u /n /i:user $kind || problem "$kind is not removed for the user"
    expect_state "$kind for the user is gone" ''
done
# Beside the machine's, of one kind and of both, and that beside the user's.
for machine in x64 x86 'x64 x86'; do
    for kind in $machine; do registrar $kind $kind; done
    before=$(expected_keys HKLM $machine)
    for kind in x64 x86; do
        registrar $kind /n /i:user $kind
        expect_state "$kind for the user beside the machine's $machine" "$before
$(expected_keys HKCU $kind)"
        registrar $kind /u /n /i:user $kind
        expect_state "$kind for the user is gone, the machine's $machine stays" "$before"
    done
    registrar x64 /n /i:user x64
    for kind in $machine; do registrar $kind $kind; done
    expect_state "the machine's $machine again beside the user's" "$before
$(expected_keys HKCU x64)"
    for kind in $machine; do registrar $kind /u $kind; done
    expect_state "the machine's $machine is gone, the user's stays" "$(expected_keys HKCU x64)"
    registrar x64 /u /n /i:user x64
    expect_state "all is gone after the machine's $machine" ''
done

[ "$failed" -eq 0 ] || echo "$failed failures"
[ "$failed" -eq 0 ]
