// Wandelt die Berichte eines Ordners um, spät gebunden: ohne Verweis auf die Typbibliothek.
// Übersetzen: csc /platform:x64 ConvertLate.cs (oder x86, je nach registrierter DLL)
// Aufruf: ConvertLate DIFFERENZORDNER BERICHTSORDNER
using System;

internal static class ConvertLate
{
    [STAThread]
    private static int Main(string[] arguments)
    {
        if (arguments.Length != 2)
        {
            Console.Error.WriteLine("Aufruf: ConvertLate DIFFERENZORDNER BERICHTSORDNER");
            return 2;
        }
        dynamic manager = Activator.CreateInstance(Type.GetTypeFromProgID("Tessary.BXConvertLLMgr", true));
        bool done = manager.ConvertReports(arguments[0], arguments[1], "");
        foreach (dynamic entry in manager.Errors)
            Console.WriteLine("{0}: {1} ({2:X8})", entry.Source, entry.Text, entry.Number);
        Console.WriteLine("{0} Umwandlungen gelungen", manager.CountCorrectReports);
        if (!done) Console.WriteLine("Nicht alle Umwandlungen sind gelungen.");
        return done ? 0 : 1;
    }
}
