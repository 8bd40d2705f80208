' VBA: works in any Office program without a reference, since everything is late bound.
Function OrderTotal(price As Double, quantity As Double) As Variant
    Dim calculator As Object, total As Variant, status As Variant, message As Variant
    Set calculator = CreateObject("Morandel10.ComExpress")
    calculator.SetValue 1, "price", price, ""
    calculator.SetValue 1, "qty", quantity, ""
    calculator.SetValue 0, "total", 0, "price*qty"
    calculator.GetValue "total", total
    calculator.GetLastErrorNum status
    If status = 0 Then
        calculator.GetErrMsg message
        Err.Raise vbObjectError + 1, "Morandel", message
    End If
    OrderTotal = total
End Function
