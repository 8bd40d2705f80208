// csc /platform:x64 Example.cs (x86 for the 32-bit library)
using System;

static class Example
{
    [STAThread]
    static void Main()
    {
        dynamic calculator = Activator.CreateInstance(Type.GetTypeFromProgID("Morandel10.ComExpress"));
        calculator.SetValue(1, "price", 12.5, "");
        calculator.SetValue(1, "qty", 3, "");
        calculator.SetValue(0, "total", 0, "price*qty");
        double total = calculator.GetValue("total");
        if (calculator.GetLastErrorNum() == 0)
            Console.WriteLine("failed: " + calculator.GetErrMsg());
        else
            Console.WriteLine("total = " + total);
    }
}
