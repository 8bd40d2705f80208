' Before each of the scripts. UTF-8 here; the tests hand them on in code page 936. They compare
' texts themselves, since the console of some hosts cannot show them.
Dim o, v, w, x, y, z, checks, failures
checks = 0
failures = 0
Sub Check(what, found, wanted)
    checks = checks + 1
    If found <> wanted Then
        failures = failures + 1
        WScript.Echo what
    End If
End Sub
Sub Finish
    If failures > 0 Or checks = 0 Then WScript.Quit 1
    WScript.Echo checks & " checks"
End Sub
Set o = CreateObject("Morandel10.ComExpress")
