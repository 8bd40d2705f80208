#!/usr/bin/env bash
# Runs the pieces of docs/hosts.md and the examples of their hosts: the macros and the web page as VBScript,
# with what their hosts have besides and without types, PowerShell's as JScript. The library must be
# registered.
# usage: host_page.sh FOLDER CSCRIPT SCRATCH, with WINE_RUNNER; FOLDER holds the unpacked package
set -eu
folder=$1 cscript=$2 scratch=$3
document=$folder/docs/hosts.md
failed=0
pieces() { awk '/^```/ {inside = !inside; print; next} inside' "$1"; }
diff <(pieces "$document") <(pieces "$folder/docs/zh/hosts.md") || { echo "FAILED: the Chinese page has other pieces"; failed=1; }
block() { awk "/^\`\`\`$1\$/ {inside = 1; next} /^\`\`\`\$/ {inside = 0} inside" "$document"; }
expect() {  # wanted, script
    local printed
    printed=$(cd "$scratch" && timeout 120 "$WINE_RUNNER" "$cscript" //nologo "$2" 2>/dev/null | tr -d '\r') || true
    [ "$printed" = "$1" ] || { echo "FAILED: $2 prints '$printed', not '$1'"; failed=1; }
}

{
    block vba
    cat <<'REST'
Class Cell
    Public Value
    Public Comment
    Sub AddComment(text)
        Comment = text
    End Sub
End Class
WScript.Echo UnitPrice(37.5, 3)
If UnitPrice(1, 0) = "存在太小的分母(为零)！" Then WScript.Echo "its message"
Dim Selection(1)
Set Selection(0) = New Cell
Selection(0).Value = "1+2"
Set Selection(1) = New Cell
Selection(1).Value = "sqrt(""a"")+""b""*2"
CommentFaults
WScript.Echo Selection(0).Comment & "," & Selection(1).Comment
REST
} | iconv -t GBK >"$scratch/macro.vbs"
expect '12.5
its message
,2 faults, the first at 4: sqrt' macro.vbs

{
    cat <<'BEFORE'
Function Made(name)
    Set Made = CreateObject(name)
End Function
Class WebServer
    Public Total
    Public Quantity
    Function CreateObject(name)
        Set CreateObject = Made(name)
    End Function
    Function HTMLEncode(text)
        If text = "存在太小的分母(为零)！" Then HTMLEncode = "encoded"
    End Function
    Function QueryString(name)
        If name = "total" Then QueryString = Total Else QueryString = Quantity
    End Function
    Sub Write(text)
        WScript.Echo text
    End Sub
End Class
Dim Server, Request, Response
Set Server = New WebServer
Set Request = Server
Set Response = Server
Sub Page
BEFORE
    block asp | sed 's/^<%$//; s/^%>$//'
    cat <<'REST'
End Sub
Request.Total = "37.5"
Request.Quantity = "3"
Page
Request.Quantity = "0"
Page
REST
} | iconv -t GBK >"$scratch/page.vbs"
expect '12.5
encoded' page.vbs

{
    sed 's/ As [A-Z][a-z]*//g' "$folder/examples/example.bas"
    echo 'WScript.Echo OrderTotal(12.5, 3)'
} | iconv -t GBK >"$scratch/order.vbs"
expect 37.5 order.vbs

as_jscript() {  # what PowerShell prints is shown, arrays that it takes apart are taken apart
    cat <<'BEFORE'
function show(value) {
    try {
        value = new VBArray(value).toArray().join();
    } catch (is_no_array) {
    }
    WScript.Echo(value);
}
BEFORE
    sed -e 's/^#/\/\//' -e 's/New-Object -ComObject \([A-Za-z0-9.]*\)/new ActiveXObject("\1")/' -e 's/ -eq / == /g' \
        -e 's/{ \([^}]*\) }/{ show(\1); }/g' \
        -e 's/^ *"\([^"$]*\)\$(\(.*\))"$/show("\1" + \2);/' -e 's/^ *"\([^"$]*\)\(\$[a-z]*\)"$/show("\1" + \2);/' \
        -e 's/^\(\$[a-z]*\), \(\$[a-z]*\) = \(.*\)$/\1 = new VBArray(\3).toArray(); \2 = \1[1]; \1 = \1[0];/'
}
block powershell | as_jscript >"$scratch/powershell.js"
expect '37.5
0,1,6,1,sqrt' powershell.js
as_jscript <"$folder/examples/example.ps1" >"$scratch/example_ps1.js"
expect 'total = 37.5' example_ps1.js
exit $failed
