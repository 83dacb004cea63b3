' Makes the difference files of the samples. Arguments: the folder with the copy.
Option Explicit

Dim base, manager
base = Host.Argument(0)
Set manager = CreateObject("Tessary.BXConvertLLMgr")
If Not manager.CreateDiffFiles(base & "\hersteller\version3", base & "\hersteller\version4", base & "\Differenzen") Then Err.Raise vbObjectError + 1, "differences.vbs", "3 to 4"
If Not manager.CreateDiffFiles(base & "\hersteller\version4", base & "\hersteller\version5", base & "\Differenzen") Then Err.Raise vbObjectError + 1, "differences.vbs", "4 to 5"
