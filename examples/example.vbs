' cscript example.vbs, saved in the system's ANSI code page or as UTF-16.
Dim calculator, total, status, message
Set calculator = CreateObject("Morandel10.ComExpress")

calculator.SetValue 1, "price", 12.5, ""            ' given
calculator.SetValue 1, "qty", 3, ""
calculator.SetValue 0, "total", 0, "price*qty"      ' computed
calculator.GetValue "total", total

calculator.GetLastErrorNum status
If status = 0 Then
    calculator.GetErrMsg message
    WScript.Echo "failed: " & message
Else
    WScript.Echo "total = " & total
End If
