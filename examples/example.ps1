# powershell -File example.ps1
$calculator = New-Object -ComObject Morandel10.ComExpress
$calculator.SetValue(1, 'price', 12.5, '')
$calculator.SetValue(1, 'qty', 3, '')
$calculator.SetValue(0, 'total', 0, 'price*qty')
$total = $calculator.GetValue('total')
if ($calculator.GetLastErrorNum() -eq 0) {
    "failed: $($calculator.GetErrMsg())"
} else {
    "total = $total"
}
