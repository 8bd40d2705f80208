#!/usr/bin/env bash
# Walks through the windows of the installer and of the removal as a person does, in both languages.
# usage: installer_pages.sh SOURCE BUILD
set -u
source_folder=$1 build_folder=$2
. "$source_folder/tests/automation/installing.sh"

walk() {  # wanted status, locale, command line, step...
    local wanted=$1 locale=$2 status
    shift 2
    MORANDEL_WINE_LOCALE=$locale timeout 240 "$wine" "$build_folder/tests/automation/walk_pages.exe" "$@" >"$scratch/printed" 2>/dev/null
    status=$?
    tr -d '\r' <"$scratch/printed" >"$scratch/pages"
    [ $status -eq "$wanted" ] || { problem "$* ends with $status, not $wanted; it shows in the end"; tail -30 "$scratch/pages"; }
}
expect_shown() {  # text...: each a line of its own, one below the other
    local text from=1 at
    for text in "$@"; do
        at=$(tail -n "+$from" "$scratch/pages" | grep -n -x -m1 -F -e "$text" | cut -d: -f1)
        [ -n "$at" ] || { problem "'$text' is not shown from line $from on:"; tail -n "+$from" "$scratch/pages"; return; }
        from=$((from + at))
    done
}
path_of_machine() { setting "$machine_environment" Path; }

# Chinese, for the machine, with the command on the path.
path=$(path_of_machine)
walk 0 zh_CN.UTF-8 "$setup" 1 1 tick 1 1 1
expect_shown "欢迎使用 Morandel $version 安装程序" 为谁安装 '谁要使用这个库？' 只为我自己，不需要管理员权限 为这台机器上的所有用户 \
    选择组件 '让命令提示符能找到 morandel。' 选择安装位置 "$machine" "Morandel $version 安装程序结束"
expect_objects "installed by the windows"
expect "the path" "$(path_of_machine)" "$path;$machine\\x64\\bin"

# While a host has the DLL loaded: told, tried again, given up; nothing is changed.
start_host system32
cp -r "$machine_folder" "$scratch/loaded"
walk 32 zh_CN.UTF-8 "$setup" 1 1 1 1 4 2
expect_shown 有程序正在使用这个文件： "$machine\\x64\\bin\\Morandel10.dll" 请结束该程序后重试。尚未作任何更改。
diff -r "$scratch/loaded" "$machine_folder" || problem "files were changed while a host has them"
walk 32 en_US.UTF-8 "$machine\\uninstall.exe _?=$machine" 1 2
expect_shown 'A program is using this file:' "$machine\\x64\\bin\\Morandel10.dll" 'End that program, then try again. Nothing has been changed.'
diff -r "$scratch/loaded" "$machine_folder" || problem "files were removed while a host has them"
stop_host

# Away again.
walk 0 zh_CN.UTF-8 "$machine\\uninstall.exe _?=$machine" 1 1
expect_shown "卸载 Morandel $version" "$machine"
expect "what is left" "$(ls "$machine_folder")" uninstall.exe
expect "the path afterwards" "$(path_of_machine)" "$path"
expect "the registry afterwards" "$("$wine" "$build_folder/tests/automation/registry_state.exe")" ''

# English, given up; then for the user alone, in a folder of one's own.
walk 2 en_US.UTF-8 "$setup" 1 2 6
expect_shown "Welcome to Morandel $version Setup" 'For whom' "Are you sure you want to quit Morandel $version Setup?"
walk 0 en_US.UTF-8 "$setup" 1 "+For me alone, without an administrator's rights" 1 1 '=C:\Own folder' 1 1
expect_shown "Welcome to Morandel $version Setup" 'For whom' 'Who is to use the library?' 'For everybody on this machine' \
    'Choose Components' "$user" 'C:\Own folder' "Completing Morandel $version Setup"
expect "the user's folder" "$(setting "HKCU\\$installed" InstallLocation)" 'C:\Own folder'
expect "the user's classes" "$(user_classes)" 1
walk 5 en_US.UTF-8 "$setup" 1 1 1 '=C:\Own folder' 1 1
expect_shown 'Morandel is installed in this folder for you alone. Take another folder, or remove that first. Nothing has been changed.'
walk 5 zh_CN.UTF-8 "$setup /D=C:/folder" 1
expect_shown '不能安装到这个文件夹：' '/D=C:/folder' 未作任何更改。
walk 0 en_US.UTF-8 'C:\Own folder\uninstall.exe _?=C:\Own folder' 1 1
expect_shown "Uninstall Morandel $version" 'C:\Own folder' 'Uninstallation Complete'
expect "the registry in the end" "$("$wine" "$build_folder/tests/automation/registry_state.exe")" ''

[ "$failed" -eq 0 ] || echo "$failed failures"
[ "$failed" -eq 0 ]
