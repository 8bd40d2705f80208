w = "before"
o.ExpressionCheck "1+2", v, w
Check "no fault", v, 1
Check "their number is not written", w, "before"
o.ExpressionCheck "sqrt(""a"")+1", v, w
Check "a fault", v, 0
Check "their number", w, 1
Dim index, kind, position, operand, name
o.GetExpressionError index, kind, position, operand, name
Check "index", index, 0
Check "kind", kind, 1
Check "position", position, 4
Check "operand", operand, 1
Check "name", name, "sqrt"
o.GetExpressionError index, kind, position, operand, name
Check "again", name, "sqrt"
o.ExpressionCheck """a""+""b"" + sin(""c"")", v, w
o.GetExpressionError index, kind, position, operand, name
Check "three faults", index, w - 1
Check "the first one", name, "+"
o.ExpressionCheck "1", v, w
On Error Resume Next
o.GetExpressionError index, kind, position, operand, name
Check "no faults to read", Hex(Err.Number), "80070057"
Err.Clear
o.SetValue 1, "a"
Check "too few arguments", Err.Number <> 0, True
Err.Clear
o.Nothing
Check "no such method", Err.Number <> 0, True
Err.Clear
On Error GoTo 0
o.SetValue 1, "a", 5, ""
Check "the object lives on", o.GetValue("a"), 5
