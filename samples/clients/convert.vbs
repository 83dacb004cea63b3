' Wandelt die Berichte eines Ordners um. Aufruf: cscript //nologo convert.vbs DIFFERENZORDNER BERICHTSORDNER
' cscript muss so viele Bits haben wie die registrierte Tessary.dll (32: C:\Windows\SysWOW64\cscript.exe).
Option Explicit

Dim manager, done, entry

If WScript.Arguments.Count <> 2 Then
  WScript.Echo "Aufruf: cscript //nologo convert.vbs DIFFERENZORDNER BERICHTSORDNER"
  WScript.Quit 2
End If

Set manager = CreateObject("Tessary.BXConvertLLMgr")
done = manager.ConvertReports(WScript.Arguments(0), WScript.Arguments(1), "")

For Each entry In manager.Errors
  WScript.Echo entry.Source & ": " & entry.Text & " (" & Hex(entry.Number) & ")"
Next
WScript.Echo manager.CountCorrectReports & " Umwandlungen gelungen"
If done Then WScript.Quit 0
WScript.Echo "Nicht alle Umwandlungen sind gelungen."
WScript.Quit 1
