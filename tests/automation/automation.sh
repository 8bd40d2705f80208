#!/usr/bin/env bash
# Proves one Windows package with clients under Wine: unpacks it into a folder whose name has blanks
# and Chinese characters, registers what is in there, reads the registry back, runs the clients and
# scripts, and takes it all away again.
# usage: automation.sh SOURCE BUILD x64|x86
set -u
source_folder=$1 build_folder=$2 kind=$3
here=$source_folder/tests/automation
failed=0
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
wine=$source_folder/scripts/wine
case $kind in
    x64) system='C:\windows\system32' compiler=x86_64-w64-mingw32-g++-posix objdump=x86_64-w64-mingw32-objdump bits=64 ;;
    x86) system='C:\windows\syswow64' compiler=i686-w64-mingw32-g++-posix objdump=i686-w64-mingw32-objdump bits=32 ;;
esac

problem() { echo "FAILED: $*"; failed=$((failed + 1)); }
windows_path() { printf 'Z:%s' "${1//\//\\}"; }
# Registry and script hosts read and write code page 936.
gbk() { iconv -f UTF-8 -t GBK; }
utf8() { iconv -f GBK -t UTF-8; }

package=$(ls "$source_folder"/build/package/morandel-*-windows-"$kind".zip) || { echo "no package; run ./package"; exit 1; }
folder="$scratch/程序 文件"
mkdir "$folder"
unzip -q "$package" -d "$folder"
folder=$(echo "$folder"/*)
library=$folder/bin/Morandel10.dll
module=$(windows_path "$library")

class='{BD4CF43D-5C7D-4E1C-B3B0-E3796A1BC833}'
type_library='{87DBCB11-BA08-4380-8638-06173CDE5481}'
interface='{195C5069-9E2E-47CB-9B50-34BEABB8EF67}'

value_of() {  # key, [value name]: what it holds; nothing if there is no such key
    if [ $# -eq 1 ]; then set -- "$1" /ve; else set -- "$1" /v "$2"; fi
    "$wine" "$system\\reg.exe" query "$@" 2>/dev/null | utf8 | tr -d '\r' | sed -n 's/^ .*REG_SZ *//p'
}
exists() { "$wine" "$system\\reg.exe" query "$1" >/dev/null 2>&1; }
expect_value() {  # wanted, key, [value name]
    local wanted=$1 found
    shift
    found=$(value_of "$@")
    [ "$found" = "$wanted" ] || problem "$* holds '$found', not '$wanted'"
}
expect_keys() {  # root
    local root=$1
    expect_value 'ComExpress Class' "$root\\Morandel10.ComExpress.1"
    expect_value "$class" "$root\\Morandel10.ComExpress.1\\CLSID"
    expect_value 'ComExpress Class' "$root\\Morandel10.ComExpress"
    expect_value "$class" "$root\\Morandel10.ComExpress\\CLSID"
    expect_value Morandel10.ComExpress.1 "$root\\Morandel10.ComExpress\\CurVer"
    expect_value 'ComExpress Class' "$root\\CLSID\\$class"
    expect_value Morandel10.ComExpress.1 "$root\\CLSID\\$class\\ProgID"
    expect_value Morandel10.ComExpress "$root\\CLSID\\$class\\VersionIndependentProgID"
    exists "$root\\CLSID\\$class\\Programmable" || problem "there is no Programmable"
    expect_value "$module" "$root\\CLSID\\$class\\InprocServer32"
    expect_value Apartment "$root\\CLSID\\$class\\InprocServer32" ThreadingModel
    expect_value "$type_library" "$root\\CLSID\\$class\\TypeLib"
    expect_value 'Morandel 10.0 Type Library' "$root\\TypeLib\\$type_library\\1.0"
    expect_value "$module" "$root\\TypeLib\\$type_library\\1.0\\0\\win$bits"
    expect_value IComExpress "$root\\Interface\\$interface"
    expect_value "$type_library" "$root\\Interface\\$interface\\TypeLib"
}
expect_no_keys() {  # root
    local key
    for key in Morandel10.ComExpress Morandel10.ComExpress.1 "CLSID\\$class" "TypeLib\\$type_library\\1.0" "Interface\\$interface"; do
        ! exists "$1\\$key" || problem "$1\\$key is left"
    done
    exists "$1\\CLSID" || problem "$1\\CLSID itself is gone"
}
register() { "$wine" "$system\\regsvr32.exe" /s "$@" "$module" >/dev/null 2>&1; }

run_script() {  # file; its text after what all of its kind begin with
    local name=${1##*/}
    { case $name in *.vbs) cat "$here/scripts/common.vbs" "$1"; echo Finish ;; *) cat "$1" ;; esac } | gbk >"$scratch/$name"
    local printed
    printed=$(cd "$scratch" && timeout 120 "$wine" "$system\\cscript.exe" //nologo "$name" 2>/dev/null)
    local status=$?
    case $status,$printed in
        0,*checks*) echo "$name: $printed" | tr -d '\r' ;;
        *) problem "$name ends with $status: $printed" ;;
    esac
}
run_client() {  # program, arguments...: a GoogleTest program of the build folder
    timeout 300 "$wine" "$build_folder/tests/automation/$1.exe" >"$scratch/log" 2>&1 || { problem "$1"; grep -avE '^\[( RUN  |  +OK|---)' "$scratch/log" | head -40; }
    grep -a 'PASSED' "$scratch/log" | sed "s/^/$1 /"
}
compile() {  # source, options...
    local source=$1
    shift
    "$compiler" -std=c++20 -Wall -Wextra -Wpedantic -Werror -static -I "$folder/include/morandel" "$source" -o "$scratch/program.exe" "$@" || problem "$source does not compile"
}
expect_printed() {  # wanted, command...
    local wanted=$1 printed
    shift
    printed=$("$@" 2>&1 | tr -d '\r')
    [ "$printed" = "$wanted" ] || problem "$* prints '$printed', not '$wanted'"
}

# The DLL: Windows' own libraries alone, its entry points undecorated, its classes.
needed=$("$objdump" -p "$library" | awk '/DLL Name/ {print tolower($3)}' | grep -vxE '(kernel32|advapi32|ole32|oleaut32|msvcrt|user32)\.dll')
[ -z "$needed" ] || problem "the DLL needs $needed"
shown=$("$objdump" -p "$library" | sed -n '/Ordinal\/Name Pointer/,/^$/p' | awk '{print $NF}' | c++filt -_ 2>/dev/null)
for name in DllCanUnloadNow DllGetClassObject DllInstall DllRegisterServer DllUnregisterServer; do
    grep -qx "$name" <<<"$shown" || problem "$name is not exported"
done
decorated=$("$objdump" -p "$library" | sed -n '/Ordinal\/Name Pointer/,/^$/p')
for class_name in CExpress CExpressionCheck CVariableExpress CVariableExpressList CCStringNode; do
    grep -q "N\?${#class_name}$class_name" <<<"$decorated" || problem "$class_name is not exported"
done
size=$(stat -c %s "$library")
[ "$size" -lt $((700 * 1024)) ] || problem "the DLL has $size bytes"

# What a run that was interrupted has left.
register '/u' || true

# For the user alone. Wine does not look there when it creates objects, so the keys must do.
expect_no_keys HKCR
register '/n' '/i:user' || problem "registration for the user"
expect_keys 'HKCU\Software\Classes'
! exists "HKLM\\Software\\Classes\\CLSID\\$class" || problem "the machine has the user's class"
register '/u' '/n' '/i:user' || problem "removal for the user"
expect_no_keys 'HKCU\Software\Classes'
! register '/n' '/i:nobody' || problem "a scope that does not exist is accepted"

# A DLL without a type library that can be read registers nothing, not even half of it.
damaged="$scratch/damaged.dll"
perl -0777 -pe 's/MSFT\x02\0/XXXX\x02\0/' "$library" >"$damaged"
! cmp -s "$library" "$damaged" || problem "there is no type library to damage"
! "$wine" "$system\\regsvr32.exe" /s "$(windows_path "$damaged")" >/dev/null 2>&1 || problem "a DLL without its type library is registered"
expect_no_keys HKCR

# Where the registry refuses.
MORANDEL_MODULE=$module run_client registration_test
expect_no_keys HKCR

# For all, twice, as installers do.
register && register || problem "registration"
expect_keys HKCR
for client in object_test type_library_test invoke_test random_invoke_test cases_dispatch_test load_test; do run_client $client; done
# Texts cross the same way in a process whose own code page is another. (In the C locale Wine could
# not even open the folder's name.)
MORANDEL_WINE_LOCALE=de_DE.UTF-8 run_client object_test
MORANDEL_WINE_LOCALE=de_DE.UTF-8 run_client cases_dispatch_test
for script in "$here"/scripts/*; do
    case $script in */common.vbs) ;; *) run_script "$script" ;; esac
done
for cases in "$source_folder"/tests/cases/*.cases; do
    name=$(basename "$cases" .cases)
    "$wine" "$build_folder/tests/automation/make_script.exe" "$(windows_path "$cases")" >"$scratch/$name.vbs"
    printed=$(cd "$scratch" && timeout 120 "$wine" "$system\\cscript.exe" //nologo "$name.vbs" 2>/dev/null) || problem "$name.cases as a script: $printed"
    case $printed in *' checks, 0 failures'*) echo "$name.vbs: $printed" | tr -d '\r' ;; *) problem "$name.vbs: $printed" ;; esac
done

# The scripts of the README, whose v is 6.
for language in vb js; do
    {
        awk "/^\`\`\`$language\$/ {inside = 1; next} /^\`\`\`\$/ {inside = 0} inside" "$folder/README.md"
        [ $language = vb ] && echo 'If v = 6 Then WScript.Echo "6"' || echo 'if (v === 6) WScript.Echo("6");'
    } | gbk >"$scratch/readme.${language/vb/vbs}"
    expect_printed 6 env -C "$scratch" "$wine" "$system\\cscript.exe" //nologo "readme.${language/vb/vbs}"
done

# The examples of the package, and programs linked with its libraries.
for example in vbs js; do
    gbk <"$folder/examples/example.$example" >"$scratch/example.$example"
    expect_printed 'total = 37.5' env -C "$scratch" "$wine" "$system\\cscript.exe" //nologo "example.$example"
done
compile "$folder/examples/example.cpp" -lole32 -loleaut32 -luuid
expect_printed 'total = 37.5' "$wine" "$scratch/program.exe"
cmake -G Ninja -S "$source_folder/tests/consumer" -B "$scratch/consumer" -DCMAKE_TOOLCHAIN_FILE="$source_folder/cmake/windows-$kind.cmake" \
    -DCMAKE_PREFIX_PATH="$folder" -DCMAKE_FIND_ROOT_PATH="$folder" -DCMAKE_EXE_LINKER_FLAGS=-static >"$scratch/log" 2>&1 &&
    cmake --build "$scratch/consumer" >>"$scratch/log" 2>&1 || { problem "the consumer does not build"; tail -20 "$scratch/log"; }
cp "$library" "$scratch/consumer"
for program in consumer consumer_static; do expect_printed 2.68 "$wine" "$scratch/consumer/$program.exe"; done
expect_printed 张三 "$wine" "$folder/bin/morandel.exe" 'strcat("张", "三")'
expect_printed 'morandel: 缺少'"')' (error 33)" "$wine" "$folder/bin/morandel.exe" '(1 + 2'

# Gone again, and removing what is gone is no failure.
register '/u' && register '/u' || problem "removal"
expect_no_keys HKCR

# Without registration.
compile "$folder/examples/registration_free.cpp" -lole32 -loleaut32 -luuid
cp "$folder"/bin/Morandel10.* "$scratch"
expect_printed 'answer = 42' env -C "$scratch" "$wine" "$scratch/program.exe" Morandel10.manifest

[ "$failed" -eq 0 ] || echo "$failed failures"
[ "$failed" -eq 0 ]
