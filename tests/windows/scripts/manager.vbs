' All members of BXConvertLLMgr on a copy of the samples. Arguments: the folder with the copy.
Option Explicit

Dim failures

Sub Expect(what, wanted, found)
  If wanted <> found Then failures = failures & vbCrLf & what & ": " & wanted & " expected, " & found & " found"
End Sub

Dim base, diffs, files, manager, errors, entry, texts, omit

base = Host.Argument(0)
diffs = base & "\Differenzen"
Set files = CreateObject("Scripting.FileSystemObject")
files.CreateFolder diffs

Set manager = CreateObject("Tessary.BXConvertLLMgr")
Set errors = manager.Errors
Expect "successes at first", 0, manager.CountCorrectReports
Expect "errors at first", 0, errors.Count
manager.ShowErrorProtocol

Expect "one pair", True, manager.CreateDiffFile(base & "\hersteller\version3\Rechnung.lst", base & "\hersteller\version4\Rechnung.lst", diffs)
Expect "its file", True, files.FileExists(diffs & "\3_4Rechnung")
Expect "one success", 1, manager.CountCorrectReports
Expect "folders 3 to 4", True, manager.CreateDiffFiles(base & "\hersteller\version3", base & "\hersteller\version4", diffs)
Expect "folders 4 to 5", True, manager.CreateDiffFiles(base & "\hersteller\version4", base & "\hersteller\version5", diffs)
Expect "difference files", 6, files.GetFolder(diffs).Files.Count
Expect "same errors", True, manager.Errors Is manager.Errors

Expect "one report", True, manager.ConvertReport(base & "\kunde\Berichte\Angebot.lst", diffs & "\3_4Angebot", base & "\Sicherung")
Expect "its backup", True, files.FileExists(base & "\Sicherung\Angebot.lst")

' Only names that the collection holds with a value are left out.
Set omit = CreateObject("Scripting.Dictionary")
omit.Add "Rechnung.lst", "ja"
omit.Add "Lieferschein.lst", ""
Expect "folder", True, manager.ConvertReports(diffs, base & "\kunde\Berichte", base & "\Sicherung", omit)
Expect "dictionary is as it was", 2, omit.Count
Expect "left out", False, files.FileExists(base & "\Sicherung\Rechnung.lst")
Expect "empty value", True, files.FileExists(base & "\Sicherung\Lieferschein.lst")
Expect "folder again, nothing left out", True, manager.ConvertReports(diffs, base & "\kunde\Berichte", "")
Expect "default backup folder", True, files.FileExists(base & "\kunde\BerichteBak\Rechnung.lst")
Expect "Nothing", True, manager.ConvertReports(diffs, base & "\kunde\Berichte", "", Nothing)
Expect "Null", True, manager.ConvertReports(diffs, base & "\kunde\Berichte", "", Null)
Expect "Empty", True, manager.ConvertReports(diffs, base & "\kunde\Berichte", "", Empty)

' A failure is a result and leaves entries, the last one naming the step.
Dim before
before = manager.CountCorrectReports
Expect "missing file", False, manager.CreateDiffFile(base & "\fehlt.lst", base & "\hersteller\version4\Rechnung.lst", diffs)
Expect "count stays", before, manager.CountCorrectReports
Expect "entries", True, manager.Errors.Count > 0
For Each entry In manager.Errors
  texts = texts & entry.Kind & " " & Hex(entry.Number) & " " & entry.Source & " " & entry.Text & "|"
Next
Expect "entry", "4 80041389 BXConvertLLMgr Prozedur: CreateDiffFile Die Datei " & base & "\fehlt.lst existiert nicht.|", texts
Expect "item", "Die Datei " & base & "\fehlt.lst existiert nicht.", manager.Errors(1).Text
Expect "default member", manager.Errors(1).Text, manager.Errors.Item(1)
manager.Errors.Clear
Expect "cleared", 0, manager.Errors.Count

On Error Resume Next
Set entry = manager.Errors(1)
Expect "no such entry", 9, Err.Number
Err.Clear
manager.ConvertReports diffs, base, "", 5
Expect "no collection", True, Err.Number <> 0
On Error GoTo 0

' A second object of the thread shares the log.
Set manager = CreateObject("Tessary.BXConvertLLMgr.1")
Expect "shared log", before, manager.CountCorrectReports

If failures <> "" Then Err.Raise vbObjectError + 1, "manager.vbs", failures
