' Compares two arrays through BXLevel0, reads what the by-reference arguments hand out, listens to
' an event and applies the differences.
Option Explicit

Dim announced
announced = ""

Dim failures

Sub Expect(what, wanted, found)
  If wanted <> found Then failures = failures & vbCrLf & what & ": " & wanted & " expected, " & found & " found"
End Sub

Function Parsed(lines)
  Dim report, line
  Set report = CreateObject("Tessary.BXReportFile")
  For Each line In lines
    report.AddLine line
  Next
  Set Parsed = report.ReportFile
End Function

Sub Level_BeforeInsert(strName, strKey, strTyp, strPosPrevName, strPosPrevKey, strPosPrevTyp, strPosNextName, strPosNextKey, strPosNextTyp, strPosNr, strValue, objLevel)
  announced = announced & strName & "/" & strPosPrevName & "/" & (objLevel Is Nothing) & ";"
End Sub

Dim oldLines, newLines, oldArray, newArray, level, differences, lines, row, text
oldLines = Array("[A]", "X=1", "Weg=1", "[B]", "Y=2")
newLines = Array("[A]", "X=2", "Neu=1", "[B]", "Y=2", "[C]", "Z=3")
Set oldArray = Parsed(oldLines)
Set newArray = Parsed(newLines)
Set level = CreateObject("Tessary.BXLevel0")
level.Compare oldArray, newArray
Expect "new rows used up", 2, newArray.Count(1)
Set differences = level.ElementArray
Expect "differences", 2, differences.Count(1)
Expect "new section", "[C]", differences(1, 1)
Expect "status of the new section", 1, differences(1, 0)
Expect "changed section", "[A]", differences(2, 1)

' A reference that is empty receives the array that is made.
level.PrepareWriting lines, 0
Expect "lines", 6, lines.Count(1)
Expect "columns of the lines", 2, lines.Count(2)
For row = 1 To lines.Count(1)
  text = text & lines(row, 0) & Left(lines(row, 1), 1) & " "
Next
Expect "levels and letters", "0N 1Z 0U 1N 1D 1U ", text
lines(1, 1) = "geändert"
Expect "own line", "geändert", lines(1, 1)

' The child level that Compare made hears of the insertion inside it, the root of the one below it.
Dim report, root, inner
Set report = Parsed(oldLines)
Set root = CreateObject("Tessary.BXLevel0")
Set inner = report(1, 12)
Host.Connect root, "Level_"
Host.Connect inner, "Level_"
root.Convert report, differences
Expect "events", "[C]/[B]/False;Neu/X/False;", announced
Host.Disconnect
Expect "converted rows", 3, report.Count(1)
Expect "converted value", "2", report(1, 12).ElementArray.Value(1, 11)

' Values that a rule found while adding.
Dim level1, owner, ownerLevel, field, value
Set level1 = CreateObject("Tessary.BXLevel1")
Expect "nothing found", False, level1.GetFoundFieldValue(owner, ownerLevel, field, value)
level1.Add "ObjectName=Kopf", , , , , , , , , , , , , 1
Expect "found", True, level1.GetFoundFieldValue(owner, ownerLevel, field, value)
Expect "owner", "[Object]", owner
Expect "owner's level", 0, ownerLevel
Expect "field", 3, field
Expect "value", "Kopf", value
Expect "found once", False, level1.GetFoundFieldValue(owner, ownerLevel, field, value)
Expect "type of the number", "Long", TypeName(ownerLevel)
Expect "type of the value", "String", TypeName(value)
level1.Add "Breite=10", , , , , , , , , , , , , 1
Expect "previous name", "ObjectName", level1.ElementArray.Value(2, 4)
Expect "child of an element", "IBXLevelBasis", TypeName(level1.LastElement)

' An array that a client made becomes an element array where it fits, and is refused where not.
Dim own
Set own = CreateObject("Tessary.XArrayDB")
Expect "no dimensions", 0, own.Count(1)
own.ReDim 1, 2, 0, 12
own(1, 0) = 3: own(1, 1) = "[A]": own(1, 2) = "[A]": own(2, 0) = 3: own(2, 1) = "[B]": own(2, 2) = "[B]"
Set level = CreateObject("Tessary.BXLevel0")
Set level.ElementArray = own
Expect "another array object", False, Not level.ElementArray Is own
own.AppendRows
Expect "rows seen by the level", 3, level.ElementArray.Count(1)
own.DeleteRows 3
Expect "typed cell", "String", TypeName(own(1, 3))
Dim emptyArray
Set emptyArray = CreateObject("Tessary.XArrayDB")
Set level = CreateObject("Tessary.BXLevel0")
level.Compare emptyArray, own
Expect "array of the client used up", 0, own.Count(1)
Expect "all new", 2, level.ElementArray.Count(1)

Dim bad
Set bad = CreateObject("Tessary.XArrayDB")
bad.ReDim 0, 3, 0, 12
On Error Resume Next
Set level.ElementArray = bad
Expect "bounds", 9, Err.Number
Expect "text", "Index außerhalb des gültigen Bereichs", Err.Description
Expect "source", "Tessary.BXLevelBasis", Replace(Err.Source, "BXLevel0", "BXLevelBasis")
Err.Clear
bad.ReDim 1, 1, 0, 12
bad(1, 0) = "kein Status"
Set level.ElementArray = bad
Expect "cell", 13, Err.Number
Err.Clear
level.Compare 5, own
Expect "no object", 13, Err.Number
Err.Clear
level.CompareElements own, own, "Tessary.BXLevelX"
Expect "class", 429, Err.Number
Err.Clear
own.Value(7, 1) = 2
Expect "row", 9, Err.Number
On Error GoTo 0

' Sorting keeps rows of equal keys in their order.
Set own = CreateObject("Tessary.XArrayDB")
own.ReDim 5, 8, 1, 2
own(5, 1) = 10: own(6, 1) = 9: own(7, 1) = 10: own(8, 1) = 1
own(5, 2) = "a": own(6, 2) = "b": own(7, 2) = "c": own(8, 2) = "d"
own.QuickSort 5, 8, 1
Expect "sorted", "dbac", own(5, 2) & own(6, 2) & own(7, 2) & own(8, 2)
own.QuickSort 5, 8, 1, 1, 8
Expect "sorted as texts", "bacd", own(5, 2) & own(6, 2) & own(7, 2) & own(8, 2)
own.InsertRows 6, 2
Expect "blank", "Empty", TypeName(own(6, 1))

If failures <> "" Then Err.Raise vbObjectError + 1, "compare.vbs", failures
