; The installer for Windows, made by scripts/package-installer.sh, which defines VERSION, STAGE (the
; folder with what is installed), REMOVAL (a file with the commands that remove it again), SIZE_KB
; and OUTPUT.
;
; Switches: /S silent, /AllUsers or /CurrentUser, /D=FOLDER (last). Exit codes: 0 done, 1 cancelled,
; 2 something failed.

Unicode true
; The decompressor becomes a part of the installer; this one is under the installer's own licence.
SetCompressor /SOLID zlib
ManifestDPIAware true
ManifestSupportedOS all
AllowSkipFiles off
Name "Tessary"
Caption "Tessary ${VERSION} installieren"
UninstallCaption "Tessary entfernen"
OutFile "${OUTPUT}"
BrandingText " "
VIProductVersion "${VERSION}.0"
VIAddVersionKey /LANG=1031 ProductName "Tessary"
VIAddVersionKey /LANG=1031 ProductVersion "${VERSION}"
VIAddVersionKey /LANG=1031 FileVersion "${VERSION}"
VIAddVersionKey /LANG=1031 FileDescription "Installation von Tessary"
VIAddVersionKey /LANG=1031 LegalCopyright "Alle Rechte vorbehalten"

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Tessary"

!define MULTIUSER_MUI
!define MULTIUSER_EXECUTIONLEVEL Highest
!define MULTIUSER_INSTALLMODE_COMMANDLINE
; Without a switch, what is there decides: the uninstaller may be started by hand.
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_KEY "${UNINSTALL_KEY}"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_VALUENAME "InstallLocation"
!define MULTIUSER_INSTALLMODE_INSTDIR "Tessary"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_KEY "${UNINSTALL_KEY}"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_VALUENAME "InstallLocation"
!define MULTIUSER_USE_PROGRAMFILES64
!include MultiUser.nsh
!include MUI2.nsh
!include LogicLib.nsh
!include x64.nsh
!include WinMessages.nsh
!include "search_path.nsh"

!define MUI_ABORTWARNING
!define MUI_WELCOMEPAGE_TEXT "Tessary bringt angepasste List && Label Berichte auf eine neue Version.$\r$\n$\r$\nInstalliert werden der Befehl $\"tessary$\", die Komponente Tessary.dll und die Anleitung.$\r$\n$\r$\nBeenden Sie Programme, die Tessary gerade benutzen."
!define MUI_FINISHPAGE_TEXT "Tessary ist installiert. Der Befehl $\"tessary$\" steht in jeder neu geöffneten Eingabeaufforderung bereit.$\r$\n$\r$\nDie Anleitung finden Sie im Startmenü."
!define MUI_FINISHPAGE_SHOWREADME "$INSTDIR\Handbuch\bedienung.html"
!define MUI_FINISHPAGE_SHOWREADME_TEXT "Anleitung öffnen"
!define MUI_FINISHPAGE_SHOWREADME_NOTCHECKED
!insertmacro MUI_PAGE_WELCOME
!insertmacro MULTIUSER_PAGE_INSTALLMODE
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "German"

Var RegisterSwitches  ; for regsvr32
Var UninstallSwitch
Var CommandFolder     ; what the search path gets
Var WantedFolder

; What depends on the system, the folder and on whether it is for all users.
!macro Choices un
Function ${un}Choose
  ${If} ${RunningX64}
    StrCpy $CommandFolder "$INSTDIR\x64"
  ${Else}
    StrCpy $CommandFolder "$INSTDIR\x86"
  ${EndIf}
  ${If} $MultiUser.InstallMode == "AllUsers"
    StrCpy $RegisterSwitches "/s"
    StrCpy $UninstallSwitch "/AllUsers"
  ${Else}
    StrCpy $RegisterSwitches "/s /n /i:user"
    StrCpy $UninstallSwitch "/CurrentUser"
  ${EndIf}
FunctionEnd
!macroend
!insertmacro Choices ""
!insertmacro Choices "un."

; Runs the system's regsvr32 of the DLL's own kind; its exit code is in $0.
!macro RunRegsvr32 switches kind
  !if "${kind}" == "x64"
    ${DisableX64FSRedirection}
  !endif
  ClearErrors
  StrCpy $0 -1
  ExecWait '"$SYSDIR\regsvr32.exe" $RegisterSwitches${switches} "$INSTDIR\${kind}\Tessary.dll"' $0
  !if "${kind}" == "x64"
    ${EnableX64FSRedirection}
  !endif
!macroend

!macro Register kind
  DetailPrint "Registriert wird ${kind}\Tessary.dll"
  !insertmacro RunRegsvr32 "" ${kind}
  ${If} $0 <> 0
    MessageBox MB_OK|MB_ICONSTOP "Die Komponente ${kind}\Tessary.dll konnte nicht registriert werden (regsvr32: $0)." /SD IDOK
    SetErrorLevel 2
    Abort "Die Installation ist unvollständig. Entfernen Sie Tessary und versuchen Sie es erneut."
  ${EndIf}
!macroend

; The installer, a 32-bit program, must not look into the 32-bit part of the registry.
!macro UseWholeRegistry
  ${If} ${RunningX64}
    SetRegView 64
  ${EndIf}
!macroend

Function .onInit
  !insertmacro UseWholeRegistry
  ; A folder on the command line comes before the usual one of all users or of this one.
  StrCpy $WantedFolder $INSTDIR
  !insertmacro MULTIUSER_INIT
  ${If} $WantedFolder != ""
    StrCpy $INSTDIR $WantedFolder
  ${EndIf}
FunctionEnd

Function un.onInit
  !insertmacro UseWholeRegistry
  !insertmacro MULTIUSER_UNINIT
  Call un.Choose
FunctionEnd

; An earlier installation goes first, as it may lie in another folder.
Function RemoveEarlier
  ReadRegStr $1 SHCTX "${UNINSTALL_KEY}" "InstallLocation"
  ${If} $1 != ""
  ${AndIf} ${FileExists} "$1\entfernen.exe"
    DetailPrint "Entfernt wird die bisherige Installation in $1"
    StrCpy $0 -1
    ExecWait '"$1\entfernen.exe" /S $UninstallSwitch _?=$1' $0
    ${If} $0 <> 0
      MessageBox MB_OK|MB_ICONSTOP "Die bisherige Installation in $1 konnte nicht entfernt werden." /SD IDOK
      SetErrorLevel 2
      Abort "Es wurde nichts installiert."
    ${EndIf}
    Delete "$1\entfernen.exe"
    RMDir "$1"
  ${EndIf}
FunctionEnd

Function WriteUninstallEntry
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayName" "Tessary"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "Publisher" "Tessary"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\entfernen.exe"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\entfernen.exe" $UninstallSwitch'
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\entfernen.exe" $UninstallSwitch /S'
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "EstimatedSize" ${SIZE_KB}
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoRepair" 1
FunctionEnd

Section
  Call Choose
  Call RemoveEarlier
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\entfernen.exe"
  Call WriteUninstallEntry
  File "${STAGE}\LIESMICH.txt"
  File /r "${STAGE}\Handbuch"
  File /r "${STAGE}\Beispiele"
  File /r "${STAGE}\Lizenzen"
  File /r "${STAGE}\x86"
  !insertmacro Register x86
  ${If} ${RunningX64}
    File /r "${STAGE}\x64"
    !insertmacro Register x64
  ${EndIf}
  ${If} $MultiUser.InstallMode == "AllUsers"
    !insertmacro AddToSearchPath HKLM "$CommandFolder"
  ${Else}
    !insertmacro AddToSearchPath HKCU "$CommandFolder"
  ${EndIf}
  CreateDirectory "$SMPROGRAMS\Tessary"
  CreateShortcut "$SMPROGRAMS\Tessary\Tessary Bedienung.lnk" "$INSTDIR\Handbuch\bedienung.html"
SectionEnd

Section "Uninstall"
  ; Without the files there is nothing that could take back what it has entered.
  ${If} ${FileExists} "$INSTDIR\x86\Tessary.dll"
    !insertmacro RunRegsvr32 " /u" x86
  ${EndIf}
  ${If} ${FileExists} "$INSTDIR\x64\Tessary.dll"
    !insertmacro RunRegsvr32 " /u" x64
  ${EndIf}
  ${If} $MultiUser.InstallMode == "AllUsers"
    !insertmacro RemoveFromSearchPath HKLM "$CommandFolder"
  ${Else}
    !insertmacro RemoveFromSearchPath HKCU "$CommandFolder"
  ${EndIf}
  Delete "$SMPROGRAMS\Tessary\Tessary Bedienung.lnk"
  RMDir "$SMPROGRAMS\Tessary"
  !include "${REMOVAL}"
  Delete "$INSTDIR\entfernen.exe"
  RMDir "$INSTDIR"
  DeleteRegKey SHCTX "${UNINSTALL_KEY}"
SectionEnd
