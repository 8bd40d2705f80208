// C# by the C interface, without COM; the library lies beside the program, or where the system looks.
// csc Prepared.cs    with Morandel10.dll of the program's own kind, /platform:x64 or /platform:x86
// mcs Prepared.cs    on Linux, with Prepared.exe.config, which names libmorandel.so.10 instead
using System;
using System.Runtime.InteropServices;
using System.Text;

sealed class Formula : IDisposable
{
    const string Library = "Morandel10";

    [StructLayout(LayoutKind.Sequential)]
    struct Position
    {
        public UIntPtr Byte, Character, Bytes, Characters;
    }

    [StructLayout(LayoutKind.Sequential)]
    struct Column
    {
        public int Type;
        public IntPtr Numbers;
        public UIntPtr Stride;
        public IntPtr Text, Offsets;
        public UIntPtr OffsetSize, Size;
    }

    const int Number = 1;

    [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
    static extern int morandel_formula_prepare(byte[] text, UIntPtr size, IntPtr names, UIntPtr count, int flags,
                                               out IntPtr formula, out IntPtr error);
    [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
    static extern void morandel_formula_free(IntPtr formula);
    [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
    static extern int morandel_formula_compute_numbers(IntPtr formula, double[] numbers, UIntPtr count,
                                                       out double result);
    [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
    static extern int morandel_formula_columns(IntPtr formula, Column[] columns, UIntPtr count, UIntPtr rows,
                                               [Out] double[] results, [Out] byte[] status, out IntPtr error);
    [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
    static extern int morandel_error_position(IntPtr error, out Position position);
    [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
    static extern IntPtr morandel_error_english(IntPtr error, out UIntPtr size);
    [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]
    static extern void morandel_error_free(IntPtr error);

    IntPtr handle;

    // Its names are in the order of their first appearance.
    public Formula(string text)
    {
        byte[] bytes = Encoding.UTF8.GetBytes(text);
        IntPtr error;
        if (morandel_formula_prepare(bytes, (UIntPtr)bytes.Length, IntPtr.Zero, UIntPtr.Zero, 0, out handle,
                                     out error) == 0)
            throw Failure(error);
    }

    public void Dispose()
    {
        morandel_formula_free(handle);
        handle = IntPtr.Zero;
    }

    public double Compute(params double[] values)
    {
        double result;
        if (morandel_formula_compute_numbers(handle, values, (UIntPtr)values.Length, out result) == 0)
            throw new ArithmeticException();
        return result;
    }

    // A value is one number for all rows, or as many as there are rows.
    public double[] Columns(int rows, params double[][] values)
    {
        var pinned = Array.ConvertAll(values, value => GCHandle.Alloc(value, GCHandleType.Pinned));
        try
        {
            var columns = new Column[values.Length];
            for (int i = 0; i < columns.Length; ++i)
            {
                columns[i].Type = Number;
                columns[i].Numbers = pinned[i].AddrOfPinnedObject();
                columns[i].Stride = (UIntPtr)(values[i].Length == 1 ? 0 : sizeof(double));
            }
            var results = new double[rows];
            IntPtr error;
            if (morandel_formula_columns(handle, columns, (UIntPtr)columns.Length, (UIntPtr)rows, results, null,
                                         out error) == 0)
                throw Failure(error);
            return results;
        }
        finally
        {
            foreach (GCHandle value in pinned) value.Free();
        }
    }

    static FormatException Failure(IntPtr error)
    {
        UIntPtr size;
        IntPtr message = morandel_error_english(error, out size);
        var bytes = new byte[(int)size];
        Marshal.Copy(message, bytes, 0, bytes.Length);
        string text = Encoding.UTF8.GetString(bytes);
        Position position;
        if (morandel_error_position(error, out position) == 1) text = "character " + position.Character + ": " + text;
        morandel_error_free(error);
        return new FormatException(text);
    }
}

static class Prepared
{
    static void Main()
    {
        using (var formula = new Formula("price*qty"))
        {
            Console.WriteLine("total = " + formula.Compute(12.5, 3));
            double[] totals = formula.Columns(3, new[] { 12.5 }, new double[] { 1, 2, 4 });
            Console.WriteLine("totals = " + string.Join(", ", totals));
        }
        try
        {
            new Formula("(price*qty").Dispose();
        }
        catch (FormatException failure)
        {
            Console.WriteLine(failure.Message);
        }
    }
}
