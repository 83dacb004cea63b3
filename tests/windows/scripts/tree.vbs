' Builds a tree by hand through the line store, reads it back as lines and looks into its arrays.
Option Explicit

Dim failures

Sub Expect(what, wanted, found)
  If wanted <> found Then failures = failures & vbCrLf & what & ": " & wanted & " expected, " & found & " found"
End Sub

Dim report, elements, level, line, written, copy, array2

Set report = CreateObject("Tessary.BXReportFile")
Expect "no array before the first line", False, Not report.ReportFile Is Nothing
For Each line In Array("[Object]", " Name=Überschrift", " [@Lines]", "  {", "  [Line]", "  LineID=1", "  }", "[Ende]")
  report.AddLine line
Next

Set elements = report.ReportFile
Expect "rows", 2, elements.Count(1)
Expect "columns", 13, elements.Count(2)
Expect "lower row", 1, elements.LowerBound(1)
Expect "upper row", 2, elements.UpperBound(1)
Expect "lower column", 0, elements.LowerBound(2)
Expect "upper column", 12, elements.UpperBound(2)
Expect "status", 3, elements(1, 0)
Expect "name", "[Object]", elements(1, 1)
Expect "next name", "[Ende]", elements.Value(1, 7)
Expect "found", 2, elements.Find(1, 1, "[ENDE]")
Expect "found backwards", 1, elements.Find(2, 1, "[Object]", 1)
Expect "not found", 0, elements.Find(1, 1, "[Fehlt]")
Expect "another array object", False, Not report.ReportFile Is elements

Set level = elements(1, 12)
Expect "another level object", False, Not elements(1, 12) Is level
Expect "inner name", "Name", level.ElementArray(1, 1)
Expect "inner value", "Überschrift", level.ElementArray(1, 11)
Set report = Nothing
level.ElementArray.Value(1, 11) = "Geändert"

Set report = CreateObject("Tessary.BXReportFile")
Set report.ReportFile = elements
line = report.GetFirstLine
Do While line <> ""
  written = written & line & "|"
  line = report.GetNextLine
Loop
Expect "lines", "[Object]| Name=Geändert| [@Lines]|  {|  [Line]|  LineID=1|  }|[Ende]|", Replace(written, vbTab, "~")

If failures <> "" Then Err.Raise vbObjectError + 1, "tree.vbs", failures
