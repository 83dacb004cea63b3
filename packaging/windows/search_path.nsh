; Puts a folder onto the search path in the registry, of the machine (HKLM) or the user (HKCU), and
; takes it off again. The text is never held in a variable of the installer, which would cut a long
; one: it stays in memory of its own, as long as it is, and keeps its type, so that %...% in it
; stays what it is. What cannot be read is left alone.
;
;   AddToSearchPath HKLM|HKCU FOLDER
;   RemoveFromSearchPath HKLM|HKCU FOLDER

!define SEARCH_PATH_KEY_HKLM "SYSTEM\CurrentControlSet\Control\Session Manager\Environment"
!define SEARCH_PATH_KEY_HKCU "Environment"
!define SEARCH_PATH_ROOT_HKLM 0x80000002
!define SEARCH_PATH_ROOT_HKCU 0x80000001
; Reading and writing, in the 64-bit part.
!define SEARCH_PATH_ACCESS 0x2011F

; $R1 key, $R2 type, $R3 memory that holds ";PATH;", $R4 ";FOLDER;" and $R5 the length of this.
; $R0 is 0 when all of that is there.
!macro OpenSearchPath un
Function ${un}OpenSearchPath
  StrLen $R5 $R4
  System::Call 'advapi32::RegOpenKeyExW(p $R0, w R1, i 0, i ${SEARCH_PATH_ACCESS}, *p .R1) i .R0'
  ${If} $R0 <> 0
    Return
  ${EndIf}
  ; Unless there is one: text with %...%, and no longer than its end.
  StrCpy $R2 2
  StrCpy $R6 0
  System::Call 'advapi32::RegQueryValueExW(p R1, w "Path", p 0, *i R2R2, p 0, *i R6R6) i .R0'
  ${If} $R0 = 2
    StrCpy $R0 0
    StrCpy $R2 2
    StrCpy $R6 0
  ${EndIf}
  ${If} $R0 = 0
  ${AndIf} $R2 <> 1
  ${AndIf} $R2 <> 2
    StrCpy $R0 13
  ${EndIf}
  ${If} $R0 <> 0
    System::Call 'advapi32::RegCloseKey(p R1)'
    Return
  ${EndIf}
  ; Room for the folder, three signs and the end.
  IntOp $R7 $R5 * 2
  IntOp $R7 $R7 + $R6
  IntOp $R7 $R7 + 16
  System::Call 'kernel32::GlobalAlloc(i 0x40, p R7) p .R3'
  System::Call 'kernel32::lstrcatW(p R3, w ";")'
  ${If} $R6 > 0
    IntOp $R7 $R3 + 2
    System::Call 'advapi32::RegQueryValueExW(p R1, w "Path", p 0, p 0, p R7, *i R6R6) i .R0'
    ${If} $R0 <> 0
      System::Call 'kernel32::GlobalFree(p R3)'
      System::Call 'advapi32::RegCloseKey(p R1)'
      Return
    ${EndIf}
  ${EndIf}
  System::Call 'kernel32::lstrcatW(p R3, w ";")'
FunctionEnd

; Writes the text from $R7 on, tells the other programs, and closes everything.
Function ${un}WriteSearchPath
  System::Call 'kernel32::lstrlenW(p R7) i .R6'
  ${If} $R6 = 0
    System::Call 'advapi32::RegDeleteValueW(p R1, w "Path")'
  ${Else}
    IntOp $R6 $R6 + 1
    IntOp $R6 $R6 * 2
    System::Call 'advapi32::RegSetValueExW(p R1, w "Path", i 0, i R2, p R7, i R6)'
  ${EndIf}
  SendMessage ${HWND_BROADCAST} ${WM_SETTINGCHANGE} 0 "STR:Environment" /TIMEOUT=2000
FunctionEnd

; Cuts the last sign off what begins at $R7.
Function ${un}CutSearchPath
  System::Call 'kernel32::lstrlenW(p R7) i .R6'
  ${If} $R6 > 0
    IntOp $R6 $R6 - 1
    IntOp $R6 $R6 * 2
    IntOp $R6 $R6 + $R7
    System::Call '*$R6(&i2 0)'
  ${EndIf}
FunctionEnd

Function ${un}CloseSearchPath
  System::Call 'kernel32::GlobalFree(p R3)'
  System::Call 'advapi32::RegCloseKey(p R1)'
FunctionEnd
!macroend
!insertmacro OpenSearchPath ""
!insertmacro OpenSearchPath "un."

Function AddFolderToSearchPath
  Call OpenSearchPath
  ${If} $R0 <> 0
    DetailPrint "Der Suchpfad konnte nicht gelesen werden und bleibt, wie er ist."
    Return
  ${EndIf}
  System::Call 'shlwapi::StrStrIW(p R3, w R4) p .R7'
  ${If} $R7 P= 0
    ; ";PATH;" becomes ";PATH;FOLDER;". A ";" at the end of the path stays there; without a path
    ; there is nothing but the folder.
    StrCpy $R7 $R3
    StrCpy $R4 $R4 "" 1
    System::Call 'kernel32::lstrlenW(p R3) i .R6'
    IntOp $R8 $R6 - 2
    IntOp $R8 $R8 * 2
    IntOp $R8 $R8 + $R3
    System::Call '*$R8(&i2 .R8)'
    ${If} $R6 = 2
      Call CutSearchPath
    ${ElseIf} $R8 = 59
      Call CutSearchPath
      StrCpy $R4 "$R4;"
    ${EndIf}
    System::Call 'kernel32::lstrcatW(p R3, w R4)'
    IntOp $R7 $R3 + 2
    Call CutSearchPath
    Call WriteSearchPath
  ${EndIf}
  Call CloseSearchPath
FunctionEnd

Function un.RemoveFolderFromSearchPath
  Call un.OpenSearchPath
  ${If} $R0 <> 0
    Return
  ${EndIf}
  System::Call 'shlwapi::StrStrIW(p R3, w R4) p .R7'
  ${If} $R7 P<> 0
    ; Everything behind ";FOLDER" moves to its place.
    IntOp $R8 $R5 - 1
    IntOp $R8 $R8 * 2
    IntOp $R8 $R8 + $R7
    System::Call 'kernel32::lstrlenW(p R8) i .R6'
    IntOp $R6 $R6 + 1
    IntOp $R6 $R6 * 2
    System::Call 'ntdll::RtlMoveMemory(p R7, p R8, p R6)'
    IntOp $R7 $R3 + 2
    Call un.CutSearchPath
    Call un.WriteSearchPath
  ${EndIf}
  Call un.CloseSearchPath
FunctionEnd

!macro ChangeSearchPath function root folder
  StrCpy $R0 ${SEARCH_PATH_ROOT_${root}}
  StrCpy $R1 "${SEARCH_PATH_KEY_${root}}"
  StrCpy $R4 ";${folder};"
  Call ${function}
!macroend
!macro AddToSearchPath root folder
  !insertmacro ChangeSearchPath AddFolderToSearchPath ${root} "${folder}"
!macroend
!macro RemoveFromSearchPath root folder
  !insertmacro ChangeSearchPath un.RemoveFolderFromSearchPath ${root} "${folder}"
!macroend
