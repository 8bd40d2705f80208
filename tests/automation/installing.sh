# Sourced: what the tests of the installer share, with a prefix of their own.
# Needs source_folder and build_folder.
here=$source_folder/tests/automation
wine=$source_folder/scripts/wine
failed=0
scratch=$(mktemp -d)
# New even where one is left by a run that was interrupted.
export WINEPREFIX=$build_folder/wine-$(basename "$0" .sh)
end() { "$wine" --end; rm -rf "$WINEPREFIX"; }
end
trap 'end; rm -rf "$scratch"' EXIT
problem() { echo "FAILED: $*"; failed=$((failed + 1)); }

setup=$(ls "$source_folder"/build/package/morandel-*-setup.exe) || { echo "no installer; run ./package"; exit 1; }
version=$(basename "$setup" | sed 's/morandel-\(.*\)-setup.exe/\1/')
drive=$WINEPREFIX/drive_c
machine='C:\Program Files\Morandel 10'
user="C:\\users\\$(id -un)\\AppData\\Local\\Programs\\Morandel 10"
machine_folder="$drive/Program Files/Morandel 10"
run() {  # installer, options...: its exit status
    local program=$1
    shift
    timeout 240 "$wine" "$program" "$@" >/dev/null 2>&1
}
# As typed: a folder at the end of the line has no quotes, whatever is in its name.
run_line() {
    printf '@%s\r\n@exit /b %%errorlevel%%\r\n' "$1" | iconv -t GBK >"$scratch/line.bat"
    (cd "$scratch" && timeout 240 "$wine" cmd /c line.bat >/dev/null 2>&1)
}
uninstall() {  # folder: as Windows' list of programs does, which waits for nothing
    local folder=$1
    run_line "\"$folder\\uninstall.exe\" /S _?=$folder" || return
    folder=$drive/${folder#C:\\}
    rm "${folder//\\//}/uninstall.exe"
    rmdir "${folder//\\//}" 2>/dev/null || true
}
setting() { "$wine" 'C:\windows\system32\reg.exe' query "$1" /v "$2" 2>/dev/null | iconv -f GBK -t UTF-8 | tr -d '\r' | sed -n 's/^ .*REG_[A-Z_]* *//p'; }
machine_environment='HKLM\System\CurrentControlSet\Control\Session Manager\Environment'
installed='Software\Microsoft\Windows\CurrentVersion\Uninstall\Morandel10'
expect() { [ "$2" = "$3" ] || problem "$1 is '$2', not '$3'"; }
expect_objects() {  # what
    local kind printed
    for kind in system32 syswow64; do
        echo 'Set o = CreateObject("Morandel10.ComExpress") : o.SetValue 0, "a", 0, "6*7" : WScript.Echo o.GetValue("a")' >"$scratch/object.vbs"
        printed=$(cd "$scratch" && "$wine" "C:\\windows\\$kind\\cscript.exe" //nologo object.vbs 2>/dev/null | tr -d '\r')
        [ "$printed" = 42 ] || problem "$1: no object in $kind: $printed"
    done
}
user_classes() { "$wine" "$build_folder/tests/automation/registry_state.exe" | tr -d '\r' | grep -c '^HKCU.*InprocServer32 @='; }

# A host that has the DLL loaded, or a file open. Wine's scripts cannot sleep, so it counts, when nobody
# else has to run.
cat >"$scratch/host.vbs" <<'HOST'
Set files = CreateObject("Scripting.FileSystemObject")
If WScript.Arguments.Count = 0 Then
    Set o = CreateObject("Morandel10.ComExpress")
Else
    Set o = files.OpenTextFile(WScript.Arguments(0))
End If
files.CreateTextFile("ready").Close
Do Until files.FileExists("stop")
    For i = 1 To 100000
    Next
Loop
HOST
start_host() {  # system32 or syswow64, a file
    rm -f "$scratch/ready" "$scratch/stop"
    (cd "$scratch" && exec nice -n 19 "$wine" "C:\\windows\\$1\\cscript.exe" //nologo host.vbs "${@:2}" >/dev/null 2>&1) &
    host=$!
    for ((i = 0; i < 300; ++i)); do [ ! -e "$scratch/ready" ] || return; sleep 0.1; done
    problem "there is no host in $1"
}
stop_host() {
    touch "$scratch/stop"
    wait $host
}
