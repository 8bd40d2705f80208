o.SetValue 1, "a", 1, ""
o.SetValue 0, "b", 0, "(a+2"
o.GetValue "b", v
Check "value of a failure", v, 0
o.GetLastErrorNum v
Check "status", v, 0
o.GetErrMsg v
Check "message", v, "缺少')'"
o.GetStringValue "a", v
Check "text after a failure", v, ""
o.Clear
o.GetErrMsg v
Check "the message stays", v, "缺少')'"
o.SetValue 1, "a", 1, ""
o.SetValue 0, "b", 0, "1/(a-1)"
o.GetValue "b", v
o.GetErrMsg v
Check "division by zero", v, "存在太小的分母(为零)！"
o.Clear
o.SetValue 1, "a", 4, ""
Check "the next set", o.GetValue("a"), 4
o.GetLastErrorNum v
Check "its status", v, 1
