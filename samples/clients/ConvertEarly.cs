// Wandelt die Berichte eines Ordners um, früh gebunden über die Typbibliothek.
// Übersetzen: tlbimp Tessary.dll /out:Interop.Tessary.dll /namespace:Tessary
//             csc /platform:x64 /reference:Interop.Tessary.dll ConvertEarly.cs
// Aufruf: ConvertEarly DIFFERENZORDNER BERICHTSORDNER
using System;
using Tessary;

internal static class ConvertEarly
{
    [STAThread]
    private static int Main(string[] arguments)
    {
        if (arguments.Length != 2)
        {
            Console.Error.WriteLine("Aufruf: ConvertEarly DIFFERENZORDNER BERICHTSORDNER");
            return 2;
        }
        IBXConvertLLMgr manager = new BXConvertLLMgr();
        bool done = manager.ConvertReports(arguments[0], arguments[1], "", Type.Missing);
        foreach (IErrorEntry entry in manager.Errors)
            Console.WriteLine("{0}: {1} ({2:X8})", entry.Source, entry.Text, entry.Number);
        Console.WriteLine("{0} Umwandlungen gelungen", manager.CountCorrectReports);
        if (!done) Console.WriteLine("Nicht alle Umwandlungen sind gelungen.");
        return done ? 0 : 1;
    }
}
