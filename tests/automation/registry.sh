# Sourced: what the registry holds of the library, and what it must hold.
# Needs wine, build_folder, problem, and modules, which tells the DLL's file for each kind.

class='{BD4CF43D-5C7D-4E1C-B3B0-E3796A1BC833}'
type_library='{87DBCB11-BA08-4380-8638-06173CDE5481}'
interface='{195C5069-9E2E-47CB-9B50-34BEABB8EF67}'

windows_path() { printf 'Z:%s' "${1//\//\\}"; }
# The help's folder is that of the one registered last.
state() { "$wine" "$build_folder/tests/automation/registry_state.exe" "$@" | tr -d '\r' | grep -v HELPDIR; }
expect_state() {  # what, wanted
    local found
    found=$(state)
    [ "$found" = "$2" ] || { problem "$1:"; diff <(echo "$2") <(echo "$found") | head -20; }
}

# What a registration must hold, from the table of the keys.
view_of() { case $2 in x64) ;; x86) [ "$1" = HKCU ] || printf 'Wow6432Node\\' ;; esac }
expected_keys() {  # root, kind...: the lines in the order of state
    local root=$1 kind view platform
    shift
    key() { printf '%s\n' "$root $1"; [ $# -lt 2 ] || printf '%s\n' "$root $1 $2"; }
    program() {
        key "$1" '@=ComExpress Class'
        key "$1\\CLSID" "@=$class"
    }
    program Morandel10.ComExpress
    key 'Morandel10.ComExpress\CurVer' '@=Morandel10.ComExpress.1'
    program Morandel10.ComExpress.1
    class_of() {  # kind
        view=$(view_of "$root" "$1")CLSID\\$class
        key "$view" '@=ComExpress Class'
        key "$view\\InprocServer32" "@=$(windows_path "${modules[$1]}")"
        echo "$root $view\\InprocServer32 ThreadingModel=Apartment"
        key "$view\\ProgID" '@=Morandel10.ComExpress.1'
        key "$view\\Programmable"
        key "$view\\TypeLib" "@=$type_library"
        key "$view\\VersionIndependentProgID" '@=Morandel10.ComExpress'
    }
    interface_in() {  # view
        key "$1Interface\\$interface" '@=IComExpress'
        key "$1Interface\\$interface\\ProxyStubClsid32" '@={00020424-0000-0000-C000-000000000046}'
        key "$1Interface\\$interface\\TypeLib" "@=$type_library"
        echo "$root $1Interface\\$interface\\TypeLib Version=1.0"
    }
    for kind in "$@"; do [ -n "$(view_of "$root" "$kind")" ] || class_of "$kind"; done
    key "TypeLib\\$type_library"
    key "TypeLib\\$type_library\\1.0" '@=Morandel 10.0 Type Library'
    key "TypeLib\\$type_library\\1.0\\0"
    for kind in x86 x64; do
        platform=${kind/x86/win32}
        case " $* " in *" $kind "*) key "TypeLib\\$type_library\\1.0\\0\\${platform/x64/win64}" "@=$(windows_path "${modules[$kind]}")" ;; esac
    done
    key "TypeLib\\$type_library\\1.0\\FLAGS" '@=0'
    interface_in ''
    [ "$root" = HKLM ] || return
    for kind in "$@"; do [ -z "$(view_of "$root" "$kind")" ] || class_of "$kind"; done
    interface_in 'Wow6432Node\'
}
