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
trap 'end; rm -rf "$scratch"' EXIT
wine=$source_folder/scripts/wine
# A prefix of its own, new even where one is left by a run that was interrupted.
export WINEPREFIX=$build_folder/wine-automation
end() { "$wine" --end; rm -rf "$WINEPREFIX"; }
end
case $kind in
    x64) system='C:\windows\system32' compiler=x86_64-w64-mingw32-g++-posix objdump=x86_64-w64-mingw32-objdump ;;
    x86) system='C:\windows\syswow64' compiler=i686-w64-mingw32-g++-posix objdump=i686-w64-mingw32-objdump ;;
esac

problem() { echo "FAILED: $*"; failed=$((failed + 1)); }
# Script hosts read code page 936.
gbk() { iconv -f UTF-8 -t GBK; }

package=$(ls "$source_folder"/build/package/morandel-*-windows-"$kind".zip) || { echo "no package; run ./package"; exit 1; }
folder="$scratch/程序 文件"
mkdir "$folder"
unzip -q "$package" -d "$folder"
folder=$(echo "$folder"/*)
library=$folder/bin/Morandel10.dll
declare -A modules=([$kind]=$library)
. "$here/registry.sh"
module=$(windows_path "$library")

# What scripts see of it, as Windows' own tool reads it. (Wine does not show them what is the user's.)
shown_class() { "$wine" "$system\\reg.exe" query "HKCR\\Morandel10.ComExpress\\CLSID" /ve 2>/dev/null | tr -d '\r' | LC_ALL=C sed -n 's/^ .*REG_SZ *//p'; }
expect_keys() {  # root
    expect_state "keys of $1" "$(expected_keys "$1" "$kind")"
    [ "$1" = HKCU ] || [ "$(shown_class)" = "$class" ] || problem "the ProgID stands for $(shown_class)"
}
expect_no_keys() {
    expect_state "no keys" ''
    [ -z "$(shown_class)" ] || problem "the ProgID still stands for $(shown_class)"
    "$wine" "$system\\reg.exe" query 'HKCR\CLSID' >/dev/null 2>&1 || problem "HKCR\CLSID itself is gone"
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
    "$compiler" -std=c++20 -Wall -Wextra -Wpedantic -Werror -static -I "$folder/include" -I "$folder/include/morandel" "$source" -o "$scratch/program.exe" "$@" || problem "$source does not compile"
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
[ "$size" -lt $((1100 * 1024)) ] || problem "the DLL has $size bytes"

# For the user alone. Wine does not look there when it creates objects, so the keys must do.
expect_no_keys
register '/n' '/i:user' || problem "registration for the user"
expect_keys HKCU
register '/u' '/n' '/i:user' || problem "removal for the user"
expect_no_keys
! register '/n' '/i:nobody' || problem "a scope that does not exist is accepted"

# A DLL without a type library that can be read registers nothing, not even half of it.
damaged="$scratch/damaged.dll"
perl -0777 -pe 's/MSFT\x02\0/XXXX\x02\0/' "$library" >"$damaged"
! cmp -s "$library" "$damaged" || problem "there is no type library to damage"
! "$wine" "$system\\regsvr32.exe" /s "$(windows_path "$damaged")" >/dev/null 2>&1 || problem "a DLL without its type library is registered"
expect_no_keys

# Where the registry refuses.
MORANDEL_MODULE=$module run_client registration_test
expect_no_keys

# For all, twice, as installers do.
register && register || problem "registration"
expect_keys HKLM
for client in object_test type_library_test conversion_test invoke_test random_invoke_test cases_dispatch_test load_test; do run_client $client; done
# Texts cross the same way in a process whose own code page is another. (In the C locale Wine could
# not even open the folder's name.)
MORANDEL_WINE_LOCALE=de_DE.UTF-8 run_client object_test
MORANDEL_WINE_LOCALE=de_DE.UTF-8 run_client cases_dispatch_test
for script in "$here"/scripts/*; do
    case $script in */common.vbs) ;; *) run_script "$script" ;; esac
done
MORANDEL_WINE_LOCALE=de_DE.UTF-8 run_script "$here/scripts/numbers.vbs"
for cases in "$source_folder"/tests/cases/*.cases; do
    name=$(basename "$cases" .cases)
    "$wine" "$build_folder/tests/automation/make_script.exe" "$(windows_path "$cases")" >"$scratch/$name.vbs"
    printed=$(cd "$scratch" && timeout 120 "$wine" "$system\\cscript.exe" //nologo "$name.vbs" 2>/dev/null) || problem "$name.cases as a script: $printed"
    case $printed in *' checks, 0 failures'*) echo "$name.vbs: $printed" | tr -d '\r' ;; *) problem "$name.vbs: $printed" ;; esac
done

# The scripts of the README, whose v is 6.
for language in vb js; do
    {
        awk "/^\`\`\`$language\$/ {inside = 1; next} /^\`\`\`\$/ {inside = 0} /^import / {inside = 0} inside" "$folder/README.md"
        [ $language = vb ] && echo 'If v = 6 Then WScript.Echo "6"' || echo 'if (v === 6) WScript.Echo("6");'
    } | gbk >"$scratch/readme.${language/vb/vbs}"
    expect_printed 6 env -C "$scratch" "$wine" "$system\\cscript.exe" //nologo "readme.${language/vb/vbs}"
done

WINE_RUNNER=$wine bash "$here/host_page.sh" "$folder" "$system\\cscript.exe" "$scratch" || problem "docs/hosts.md"

WINE_RUNNER=$wine bash "$here/languages.sh" "$folder" $kind "$scratch" || problem "the examples in other languages"

# What the documents tell to type, where they tell it: each line of regsvr32, in order, and the
# compiler's of the example.
typed_lines() { sed -n 's/^\(C:.*\)\{0,1\}\(regsvr32[. ].*Morandel10\.dll\).*/\2/p' "$folder/$1" | sed 's/regsvr32\.exe/regsvr32/'; }
for document in README.md docs/windows.md docs/zh/windows.md; do
    register '/u'
    lines=$(typed_lines "$document")
    [ "$(wc -l <<<"$lines")" -ge 1 ] && [ -n "$lines" ] || problem "$document types no regsvr32"
    while read -r program options; do
        (cd "$folder" && "$wine" "$system\\$program.exe" /s $options </dev/null >/dev/null 2>&1) || problem "$document: $program $options"
        case $options in
            /u*) expect_no_keys ;;
            *user*) expect_keys HKCU ;;
            *) expect_keys HKLM ;;
        esac
    done <<<"$lines"
done
register
typed=$(sed -n 's|^// *\(x86_64-w64-mingw32-g++-posix .*\)|\1|p' "$folder/examples/example.cpp")
(cd "$folder/examples" && ${typed/#x86_64-w64-mingw32-g++-posix/$compiler} -o "$scratch/typed.exe") || problem "example.cpp: $typed"
expect_printed 'total = 37.5' "$wine" "$scratch/typed.exe"

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
for program in consumer consumer_static; do expect_printed '2.68 total 37.5 sqrt abc' "$wine" "$scratch/consumer/$program.exe"; done
# Exceptions reach hosts built as the library is, with a runtime of their own or a shared one.
compiler_file() { "$compiler" "-print-file-name=$1"; }
for runtime in static shared; do
    mkdir "$scratch/$runtime"
    cp "$library" "$scratch/$runtime"
    [ $runtime = static ] || for name in libstdc++-6.dll libgcc_s_seh-1.dll libgcc_s_dw2-1.dll libwinpthread-1.dll; do
        [ ! -e "$(compiler_file $name)" ] || cp "$(compiler_file $name)" "$scratch/$runtime"
    done
    "$compiler" -std=c++20 -O2 -Wall -Wextra -Wpedantic -Werror -I "$folder/include" "$here/exceptions.cpp" \
        -o "$scratch/$runtime/exceptions.exe" "$folder/lib/libMorandel10.dll.a" -lole32 -loleaut32 -luuid $([ $runtime = shared ] || echo -static) 2>"$scratch/log" ||
        { problem "the host of exceptions does not build"; cat "$scratch/log"; }
    expect_printed 'late 100, linked 100, in a thread 100, early 100; destroyed 300' timeout 60 "$wine" "$scratch/$runtime/exceptions.exe"
done
expect_printed 张三 "$wine" "$folder/bin/morandel.exe" 'strcat("张", "三")'
expect_printed 'morandel: 这个“(”没有闭合 (错误 33)
    (1 + 2
    ^' "$wine" "$folder/bin/morandel.exe" '(1 + 2'

# Gone again, and removing what is gone is no failure.
register '/u' && register '/u' || problem "removal"
expect_no_keys

# Without registration: by the manifest beside the DLL, and by that within it, for a program that names
# the assembly in its own manifest as windows.md tells.
compile "$folder/examples/registration_free.cpp" -lole32 -loleaut32 -luuid
mkdir "$scratch/within" "$scratch/beside"
cp "$library" "$scratch/within"
cp "$folder"/bin/Morandel10.* "$scratch/beside"
[ $kind = x64 ] && architecture=amd64 || architecture=x86
for place in within beside; do
    {
        echo '<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">'
        sed -n '/^<dependency>/,/^<\/dependency>/p' "$folder/docs/windows.md" | sed "s/amd64/$architecture/"
        echo '</assembly>'
    } >"$scratch/$place/host.manifest"
    cp "$scratch/program.exe" "$scratch/$place"
    expect_printed 'answer = 42' env -C "$scratch/$place" "$wine" ./program.exe host.manifest
done
expect_printed 'answer = 42' env -C "$scratch/beside" "$wine" ./program.exe Morandel10.manifest

[ "$failed" -eq 0 ] || echo "$failed failures"
[ "$failed" -eq 0 ]
