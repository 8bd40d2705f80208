#!/usr/bin/env bash
# Proves the installer under Wine, in a prefix of its own: for the machine and for the user, with the
# command on the path, over an older version, while a host has the DLL loaded, and away again; what the
# registry and the disk hold afterwards is what they held before.
# usage: installer.sh SOURCE BUILD
set -u
source_folder=$1 build_folder=$2
. "$source_folder/tests/automation/installing.sh"

for kind in x64 x86; do
    unzip -q -d "$scratch/stage" "$source_folder/build/package/morandel-$version-windows-$kind.zip" || exit 1
    mv "$scratch/stage/morandel-$version-windows-$kind" "$scratch/stage/$kind"
done
# An older version, with a file that this one no longer has.
cp -r "$scratch/stage" "$scratch/older"
echo old >"$scratch/older/x64/examples/no longer here.txt"
"$source_folder/scripts/installer" 9.9.9 "$scratch/older" "$scratch/older.exe" >"$scratch/log" &
# The same packages give the same installer.
"$source_folder/scripts/installer" "$version" "$scratch/stage" "$scratch/again.exe" >"$scratch/again.log"
wait $! || { cat "$scratch/log"; exit 1; }
cmp "$setup" "$scratch/again.exe" || problem "the installer differs when it is made again"
cp "$setup" "$scratch/setup.exe"

# All of the registry and the disk that is not of the moment. The removal's own copy in the folder of
# temporary files goes when the system starts next.
snapshot() {
    wineserver -k
    wineserver -w
    (cd "$WINEPREFIX" && find drive_c -not -path '*/Temp/*' -not -path '*/temp/*' | sort
        for hive in system.reg user.reg; do
            sed -e '/^#time/d' -e 's/^\(\[.*\]\) [0-9]*$/\1/' "$hive" | awk -v hive=$hive '/^\[/ {key = $0} NF {print hive, key, $0}'
        done | grep -v -e PendingFileRename -e DriverDateData -e 'Explorer\\\\' -e 'Wine\\\\' -e '"SavedTime"' | sort)
}
expect_same() {  # what, before
    snapshot >"$scratch/after"
    diff "$2" "$scratch/after" >"$scratch/difference" || { problem "$1 left something:"; head -20 "$scratch/difference"; }
}
# Once there and back, so that what Wine's own programs leave in a new prefix is there before, and the
# keys that every user of Windows has.
run "$setup" /S /AllUsers
expect_objects "installed for the first time"
uninstall "$machine"
run "$setup" /S /CurrentUser
uninstall "$user"
rmdir "$drive/users/$(id -un)/AppData/Local/Programs"
snapshot >"$scratch/before"

# For the machine.
run "$setup" /S /AllUsers || problem "installing for the machine ends with $?"
for kind in x64 x86; do
    diff -r "$scratch/stage/$kind" "$machine_folder/$kind" >"$scratch/difference" || { problem "$kind is not installed as packed"; head -5 "$scratch/difference"; }
done
expect_objects "installed for the machine"
expect "the version shown" "$(setting "HKLM\\$installed" DisplayVersion)" "$version"
expect "the name shown in Chinese" "$(setting "HKLM\\$installed" DisplayName)" "Morandel 公式计算 $version"
case $(setting "$machine_environment" Path) in *Morandel*) problem "the path was not asked for" ;; esac
uninstall "$machine" || problem "removal from the machine ends with $?"
expect_same "removal from the machine" "$scratch/before"

# In a language that the installer does not speak it speaks English.
MORANDEL_WINE_LOCALE=de_DE.UTF-8 run "$setup" /S /AllUsers
expect "the name shown in English" "$(setting "HKLM\\$installed" DisplayName)" "Morandel formula calculation $version"
run "$machine_folder/uninstall.exe" /S
# Its entry under the installed programs goes last.
for ((i = 0; i < 200; ++i)); do [ -n "$(setting "HKLM\\$installed" DisplayVersion)" ] || break; sleep 0.2; done
expect_same "the removal that copies itself first" "$scratch/before"

# The path: at its end, once, and gone again.
path=$(setting "$machine_environment" Path)
run "$setup" /S /AllUsers /PATH
run "$setup" /S /AllUsers /PATH
expect "the path" "$(setting "$machine_environment" Path)" "$path;C:\\Program Files\\Morandel 10\\x64\\bin"
expect "the command by the path" "$(cd "$scratch" && "$wine" cmd /c 'morandel 6*7' 2>/dev/null | tr -d '\r')" 42
run "$setup" /S /AllUsers
expect "the path after an upgrade" "$(setting "$machine_environment" Path)" "$path;C:\\Program Files\\Morandel 10\\x64\\bin"
uninstall "$machine"
expect_same "removal with the path" "$scratch/before"

# Over an older version, in a folder of one's own where there is something besides.
own='C:\公式 计算'
run_line "older.exe /S /AllUsers /PATH /D=$own" || problem "the older version ends with $?"
[ -e "$drive/公式 计算/x64/examples/no longer here.txt" ] || problem "the older version is not where it was to be"
echo mine >"$drive/公式 计算/x64/examples/mine.txt"
# While a host has the DLL loaded, nothing is changed.
cp -r "$drive/公式 计算" "$scratch/loaded"
for system in system32 syswow64; do
    start_host $system
    state=$("$wine" "$build_folder/tests/automation/registry_state.exe")
    for line in "setup.exe /S /AllUsers" "\"$own\\uninstall.exe\" /S _?=$own"; do
        run_line "$line"
        expect "'$line' while $system has it" $? 32
        diff -r "$scratch/loaded" "$drive/公式 计算" || problem "files were changed while $system has them"
        expect "the registry" "$("$wine" "$build_folder/tests/automation/registry_state.exe")" "$state"
        expect "the version" "$(setting "HKLM\\$installed" DisplayVersion)" 9.9.9
        [ ! -e "$drive/公式 计算.new" ] || problem "unpacked files are left"
    done
    stop_host
done
run "$setup" /S /AllUsers || problem "the upgrade ends with $?"
[ ! -e "$drive/公式 计算/x64/examples/no longer here.txt" ] || problem "a file of the older version is left"
[ -e "$drive/公式 计算/x64/examples/mine.txt" ] || problem "somebody's file is gone"
expect "the version after the upgrade" "$(setting "HKLM\\$installed" DisplayVersion)" "$version"
expect_objects "upgraded"
uninstall "$own" || problem "removal after the upgrade ends with $?"
[ -e "$drive/公式 计算/x64/examples/mine.txt" ] || problem "somebody's file is gone with the removal"
rm -rf "$drive/公式 计算"
expect_same "removal after the upgrade" "$scratch/before"

# For the user alone, beside the machine's.
run "$setup" /S /CurrentUser /PATH || problem "installing for the user ends with $?"
expect "the user's path" "$(setting 'HKCU\Environment' Path)" "$user\\x64\\bin"
expect "the version for the user" "$(setting "HKCU\\$installed" DisplayVersion)" "$version"
expect "the version for the machine" "$(setting "HKLM\\$installed" DisplayVersion)" ''
expect "the user's classes" "$(user_classes)" 1
run "$setup" /S /AllUsers
uninstall "$user" || problem "removal for the user ends with $?"
rmdir "$drive/users/$(id -un)/AppData/Local/Programs"
expect_objects "the machine's after the user's is gone"
uninstall "$machine"
expect_same "removal for the user" "$scratch/before"

# Beside the folder there is something of the user's already, or the older version.
mkdir "$drive/M.new"
echo mine | tee "$drive/M.new/mine.txt" >"$drive/M.new1"
run_line 'setup.exe /S /AllUsers /D=C:\M' || problem "installing beside what is the user's ends with $?"
expect "what is beside the folder" "$(cd "$drive" && echo M* && cat M.new/mine.txt M.new1)" $'M M.new M.new1\nmine\nmine'
uninstall 'C:\M'
rm -rf "$drive"/M.*
expect_same "removal beside what is the user's" "$scratch/before"
run_line 'older.exe /S /AllUsers /D=C:\M.new'
run_line 'setup.exe /S /AllUsers /D=C:\M' || problem "the upgrade from beside it ends with $?"
expect "where it is" "$(cd "$drive" && echo M*)" M
expect_objects "upgraded from beside it"
uninstall 'C:\M'
expect_same "removal after the upgrade from beside it" "$scratch/before"

# What can be neither replaced nor removed stays as it is: its uninstaller does not start; somebody has a file open.
run_line 'older.exe /S /AllUsers /D=C:\M'
cp "$drive/M/uninstall.exe" "$scratch/uninstall.exe"
echo nothing >"$drive/M/uninstall.exe"
expect_nothing_done() {  # what, wanted status, line
    rm -rf "$scratch/as-it-was"
    cp -r "$drive/M" "$scratch/as-it-was"
    run_line "$3"
    expect "'$3' while $1" $? "$2"
    diff -r "$scratch/as-it-was" "$drive/M" || problem "files were changed while $1"
    expect "what is beside the folder while $1" "$(cd "$drive" && echo M*)" M
    expect "the version while $1" "$(setting "HKLM\\$installed" DisplayVersion)" 9.9.9
}
expect_nothing_done "the old uninstaller does not start" 5 'setup.exe /S /AllUsers'
cp "$scratch/uninstall.exe" "$drive/M/uninstall.exe"
start_host system32 'C:\M\x64\examples\example.vbs'
expect_nothing_done "somebody has a file open" 32 'setup.exe /S /AllUsers'
expect_nothing_done "somebody has a file open" 32 '"C:\M\uninstall.exe" /S _?=C:\M'
stop_host
chmod a-w "$drive/M/x64/examples/example.vbs"
uninstall 'C:\M' || problem "removal of a file that is read-only ends with $?"
expect_same "removal of a file that is read-only" "$scratch/before"

# A folder is where a file is to be.
mkdir -p "$drive/M/x64/examples/example.vbs/mine"
run_line 'setup.exe /S /AllUsers /D=C:\M'
expect "installing where a folder is" $? 5
expect "what is left there" "$(cd "$drive" && find M* | sort | tail -n 1)" M/x64/examples/example.vbs/mine
rm -r "$drive/M"
expect_same "installing where a folder is" "$scratch/before"

# The machine's and the user's cannot share a folder, however it is written.
for scopes in "AllUsers HKLM CurrentUser HKCU" "CurrentUser HKCU AllUsers HKLM"; do
    read -r first first_root second second_root <<<"$scopes"
    run_line "setup.exe /S /$first /D=C:\\M"
    state=$("$wine" "$build_folder/tests/automation/registry_state.exe")
    run_line "setup.exe /S /$second /D=C:\\Users\\..\\m\\"
    expect "installing with /$second over /$first" $? 5
    expect "the version of /$second" "$(setting "$second_root\\$installed" DisplayVersion)" ''
    expect "the version of /$first" "$(setting "$first_root\\$installed" DisplayVersion)" "$version"
    expect "the registry with /$second refused" "$("$wine" "$build_folder/tests/automation/registry_state.exe")" "$state"
    [ -e "$drive/M/x64/bin/Morandel10.dll" ] || problem "the files of /$first are gone"
    uninstall 'C:\M'
    expect_same "removal of /$first" "$scratch/before"
done

# A folder written another way, there and in the registry.
run_line 'setup.exe /S /AllUsers /PATH /D=C:\Dot\..\M\'
expect "the folder" "$(setting "HKLM\\$installed" InstallLocation)" 'C:\M'
"$wine" reg add "HKLM\\$installed" /v InstallLocation /d 'C:\Dot\..\m' /f >/dev/null 2>&1
uninstall 'C:\M' || problem "removal of a folder written another way ends with $?"
expect_same "removal of a folder written another way" "$scratch/before"

# No folder at all.
for folder in C:/Fwd/x 'C:\' 'M' '"C:\M"' 'C:\windows\win.ini\M'; do
    run_line "setup.exe /S /AllUsers /D=$folder"
    expect "installing to '$folder'" $? 5
done
expect_same "refusing what is no folder" "$scratch/before"

# A library that is gone cannot unregister itself.
for gone in "AllUsers x86" "AllUsers x64" "CurrentUser x86 x64"; do
    read -r scope kinds <<<"$gone"
    run_line "setup.exe /S /$scope /D=C:\\M"
    for kind in $kinds; do rm "$drive/M/$kind/bin/Morandel10.dll"; done
    uninstall 'C:\M' || problem "removal without $gone ends with $?"
    expect_same "removal without $gone" "$scratch/before"
done

# A path that has the folder already keeps it.
path='C:\one;C:\M\x64\bin;C:\two'
"$wine" reg add 'HKCU\Environment' /v Path /d "$path" /f >/dev/null 2>&1
for time in once again; do
    run_line 'setup.exe /S /CurrentUser /PATH /D=C:\M'
    expect "the user's own path, installed $time" "$(setting 'HKCU\Environment' Path)" "$path"
done
uninstall 'C:\M'
expect "the user's own path in the end" "$(setting 'HKCU\Environment' Path)" "$path"
"$wine" reg delete 'HKCU\Environment' /v Path /f >/dev/null 2>&1
expect_same "removal with the user's own path" "$scratch/before"

[ "$failed" -eq 0 ] || echo "$failed failures"
[ "$failed" -eq 0 ]
