Attribute VB_Name = "ConvertReports"
' Wandelt die Berichte eines Ordners um (VB6, VBA). In VB6 ein Projekt ohne Formular mit Startobjekt
' Sub Main; Verweis auf "Tessary 1.0". Aufruf: Convert.exe "DIFFERENZORDNER|BERICHTSORDNER"
Option Explicit

#If VBA7 Then
Private Declare PtrSafe Sub ExitProcess Lib "kernel32" (ByVal uExitCode As Long)
#Else
Private Declare Sub ExitProcess Lib "kernel32" (ByVal uExitCode As Long)
#End If

Public Sub Main()
    Dim folders() As String
    folders = Split(Replace(Command$, """", ""), "|")
    If UBound(folders) <> 1 Then ExitProcess 2
    ExitProcess ConvertFolder(folders(0), folders(1))
End Sub

' 0, wenn alle Berichte umgewandelt sind, sonst 1; auch aus VBA aufrufbar.
Public Function ConvertFolder(ByVal strDiffFolder As String, ByVal strReportFolder As String) As Long
    Dim manager As Tessary.BXConvertLLMgr
    Dim entry As Tessary.IErrorEntry
    Set manager = New Tessary.BXConvertLLMgr
    If Not manager.ConvertReports(strDiffFolder, strReportFolder, "") Then ConvertFolder = 1
    For Each entry In manager.Errors
        Tell entry.Source & ": " & entry.Text & " (" & Hex$(entry.Number) & ")"
    Next
    Tell manager.CountCorrectReports & " Umwandlungen gelungen"
    If ConvertFolder <> 0 Then Tell "Nicht alle Umwandlungen sind gelungen."
End Function

' Im Programm auf die Standardausgabe, in der Entwicklungsumgebung ins Direktfenster.
Private Sub Tell(ByVal strLine As String)
    Debug.Print strLine
    On Error Resume Next
    CreateObject("Scripting.FileSystemObject").GetStandardStream(1).WriteLine strLine
End Sub
