o.ValidateExpression "strsub(s, n, 2) + x", v
Check "accepted", v, 1
o.GetVariableCount v
Check "count", v, 3
o.get_Variable 1, v
Check "first", v, "s"
o.get_Variable 3, v
Check "third", v, "x"
o.get_Variable 4, v
Check "none", v, ""
o.get_Variable_Type 1, v
Check "type of the first", v, 2
o.get_Variable_Type 2, v
Check "type of the second", v, 0
v = "before"
o.get_Variable_Type 9, v
Check "type of none", v, "before"
o.ValidateExpression "(1+2", v
Check "refused", v, 0
o.GetErrMsg v
Check "message", v, "缺少')'"
o.ValidateExpression "数量*单价", v
o.get_Variable 2, v
Check "Chinese name", v, "单价"
Check "the result of the call", o.ValidateExpression("1+1"), 1
