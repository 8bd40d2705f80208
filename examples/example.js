// cscript example.js. JScript has no arguments by reference: an output that is left out at the end
// is the result of the call.
var calculator = new ActiveXObject("Morandel10.ComExpress");
calculator.SetValue(1, "price", 12.5, "");
calculator.SetValue(1, "qty", 3, "");
calculator.SetValue(0, "total", 0, "price*qty");
var total = calculator.GetValue("total");
if (calculator.GetLastErrorNum() === 0) {
    WScript.Echo("failed: " + calculator.GetErrMsg());
} else {
    WScript.Echo("total = " + total);
}
