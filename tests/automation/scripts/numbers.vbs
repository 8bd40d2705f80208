' In any country: numbers that a script has turned into texts.
o.SetValue 1, "n", CStr(2.5), ""
Check "a number as a text", o.GetValue("n"), 2.5
o.Clear
o.SetValue 1, "n", CStr(-0.125), ""
Check "a negative one", o.GetValue("n"), -0.125
o.Clear
o.SetValue CStr(1), "n", CStr(7), ""
Check "the kind too", o.GetValue("n"), 7
o.Clear
o.SetValue 0, "f", 0, 1e15
Check "a number as a formula", o.GetValue("f"), 1e15
o.Clear
o.SetValue 0, "f", 0, 2.5
Check "with a fraction", o.GetValue("f"), 2.5
On Error Resume Next
o.SetValue 1, "n", FormatNumber(1234.5, 1, True, False, True), ""
Check "grouped digits", Hex(Err.Number), "D"
Err.Clear
o.SetValue 1, "n", "5 kg", ""
Check "a rest", Hex(Err.Number), "D"
