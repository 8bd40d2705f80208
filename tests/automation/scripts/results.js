// What a language without arguments by reference can do: each method by its result. Faults by
// number; what is not written is undefined.
var o = new ActiveXObject("Morandel10.ComExpress");
var checks = 0;
var failures = 0;
function check(what, found, wanted) {
    checks = checks + 1;
    if (found !== wanted) {
        failures = failures + 1;
        WScript.Echo(what);
    }
}
o.SetValue(1, "a", 2, "");
o.SetValue(0, "b", 0, "a*3");
check("value", o.GetValue("b"), 6);
check("status", o.GetLastErrorNum(), 1);
check("type", o.GetResultType(), 1);
o.SetStringValue(1, "s", "苹果", "");
o.SetStringValue(0, "t", "", "strcat(s, \"！\")");
check("calculation", o.GetValue("a"), 2);
check("text", o.GetStringValue("t"), "苹果！");
check("length in characters", o.GetStringValue("t").length, 3);
check("code points", o.GetStringValue("t").charCodeAt(2), 0xFF01);
o.Clear();
o.SetValue(0, "b", 0, "(1+2");
check("failure", o.GetValue("b"), 0);
check("its status", o.GetLastErrorNum(), 0);
check("its message", o.GetErrMsg(), "缺少')'");
check("its code points", o.GetErrMsg().charCodeAt(0), 0x7F3A);
check("validation", o.ValidateExpression("strsub(s, n, 2)"), 1);
check("count", o.GetVariableCount(), 2);
check("name", o.get_Variable(2), "n");
check("its type", o.get_Variable_Type(2), 0);
check("type of none", o.get_Variable_Type(3), undefined);
check("no faults", o.ExpressionCheck("1+2", 0), undefined);
check("faults", o.ExpressionCheck("sqrt(\"a\")", 0), 1);
check("the first one", o.GetExpressionError(0, 0, 0, 0), "sqrt");
var all = new VBArray(o.ExpressionCheck("\"a\"*2+sqrt(\"b\")")).toArray();
check("all outputs", all.length, 2);
check("there are faults", all[0], 0);
check("their number", all[1], 2);
all = new VBArray(o.GetExpressionError()).toArray();
check("all of a fault", all.join(), "1,1,5,1,*");
all = new VBArray(o.ExpressionCheck("1")).toArray();
check("no faults", all[0], 1);
check("their number is not written", all[1], undefined);
var thrown = "nothing";
try {
    o.GetExpressionError(0, 0, 0, 0);
} catch (problem) {
    thrown = (problem.number >>> 0).toString(16);
}
check("no faults to read", thrown, "80070057");
thrown = "nothing";
try {
    o.GetExpressionError();
} catch (problem) {
    thrown = (problem.number >>> 0).toString(16);
}
check("nor as an array", thrown, "80070057");
o.Clear();
o.SetValue(0, "big", 0, 1e21);
check("a number as a formula", o.GetValue("big"), 1e21);
o.Clear();
o.SetValue(1, "a", 5, "");
check("the object lives on", o.GetValue("a"), 5);
if (failures > 0) WScript.Quit(1);
WScript.Echo(checks + " checks");
