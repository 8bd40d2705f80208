o.SetStringValue 1, "s", "苹果", ""
o.GetStringValue "s", v
Check "before any calculation", v, "苹果"
o.SetStringValue 0, "t", "", "strcat(s, ""！"")"
o.GetValue "t", v
Check "the number of a text", v, 0
o.GetStringValue "t", v
Check "t", v, "苹果！"
o.GetResultType v
Check "result type", v, 2
o.SetValue 0, "n", 0, "strlen(s)"
Check "bytes", o.GetValue("n"), 4
Check "the result of the call", o.GetStringValue("t"), "苹果！"
o.Clear
Check "after Clear", o.GetStringValue("t"), ""
o.SetStringValue 0, "t", "", "left(""abcd"",2)"
o.GetValue "t", v
Check "retried", o.GetStringValue("t"), "ab"
