o.SetValue 1, "a", 2, ""
o.SetValue 0, "b", 0, "a*3"
o.GetLastErrorNum v
Check "status after SetValue", v, 1
o.GetValue "b", v
Check "b", v, 6
Check "type of b", TypeName(v), "Double"
o.GetValue "a", v
Check "a", v, 2
o.GetValue "nobody", v
Check "an unknown name is the first variable", v, 2
o.GetLastErrorNum v
Check "status", v, 1
o.GetResultType v
Check "result type", v, 1
Check "the result of the call", o.GetValue("b"), 6
o.SetValue 1, "b", 9, ""
Check "a second record of a name", o.GetValue("b"), 6
o.Clear
o.SetValue 1, "b", 9, ""
Check "after Clear", o.GetValue("b"), 9
o.Clear
Check "an empty list", o.GetValue("b"), 0
o.SetValue 1, "单价", 12.5, ""
o.SetValue 0, "总价", 0, "单价*4"
Check "Chinese names", o.GetValue("总价"), 50
o.Clear
o.SetValue 0, "c", 0, "int(7.9)"
v = o.GetValue("c")
o.GetResultType v
Check "a whole number", v, 0
' The other name of the object, and a second object beside the first.
Set x = CreateObject("Morandel10.ComExpress.1")
x.SetValue 1, "c", 3, ""
Check "the second object", x.GetValue("c"), 3
Check "the first object", o.GetValue("c"), 7
Set x = Nothing
