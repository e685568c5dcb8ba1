; The installer, for one user and without an administrator's rights: the program keeps its backup
; sets and its log in its own folder, which must therefore be the user's. ../package runs it with
;   VERSION 3.0.6, FILE_VERSION 3.0.0.6, COMPANY and NOTICE of the version resource,
;   TARGET amd64-unicode or x86-unicode, FILES the folder to install, ICON, OUTPUT
; Exit codes of a silent run (/S): 0 done, 2 failed, 3 Vantrel is running, 4 Windows is too old,
; 5 the folder cannot be written. /DESKTOP selects the shortcut on the desktop.

Target ${TARGET}
SetCompressor /SOLID lzma
ManifestDPIAware true
ManifestSupportedOS all
RequestExecutionLevel user

!include MUI2.nsh
!include LogicLib.nsh
!include FileFunc.nsh
!include Sections.nsh

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Vantrel"
!define SHORTCUT "$SMPROGRAMS\Vantrel.lnk"
!define GUIDE_SHORTCUT "$SMPROGRAMS\Vantrel Guide.lnk"
!define DESKTOP_SHORTCUT "$DESKTOP\Vantrel.lnk"

Name "Vantrel"
BrandingText "Vantrel ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\Vantrel"
; An installation in another place is updated where it is.
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"

VIProductVersion "${FILE_VERSION}"
VIFileVersion "${FILE_VERSION}"
VIAddVersionKey "ProductName" "Vantrel"
VIAddVersionKey "ProductVersion" "${FILE_VERSION}"
VIAddVersionKey "FileVersion" "${FILE_VERSION}"
VIAddVersionKey "FileDescription" "Vantrel Setup"
VIAddVersionKey "CompanyName" "${COMPANY}"
VIAddVersionKey "LegalCopyright" "${NOTICE}"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_NODESC
!define MUI_FINISHPAGE_RUN "$INSTDIR\Vantrel.exe"
!define MUI_FINISHPAGE_SHOWREADME "$INSTDIR\guide.html"
!define MUI_FINISHPAGE_SHOWREADME_TEXT "Show the &guide"
!define MUI_FINISHPAGE_SHOWREADME_NOTCHECKED

!define MUI_PAGE_CUSTOMFUNCTION_LEAVE CheckFolder
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_COMPONENTS
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; A program that runs does not let its file be written, whoever runs it.
!macro WAIT_UNTIL_CLOSED UN
Function ${UN}WaitUntilClosed
again:
  IfFileExists "$INSTDIR\Vantrel.exe" 0 closed
  ClearErrors
  FileOpen $0 "$INSTDIR\Vantrel.exe" a
  IfErrors 0 free
  MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION \
    "Vantrel is running.$\r$\n$\r$\nPlease close it, and press Retry." \
    /SD IDCANCEL IDRETRY again
  SetErrorLevel 3
  Quit
free:
  FileClose $0
closed:
FunctionEnd
!macroend
!insertmacro WAIT_UNTIL_CLOSED ""
!insertmacro WAIT_UNTIL_CLOSED "un."

; The program keeps its sets and its log in its own folder. $0 is "" when a file can be made there.
Function TryFolder
  StrCpy $2 "1"
  ${IfNot} ${FileExists} "$INSTDIR\*.*"
    StrCpy $2 "0"
    CreateDirectory "$INSTDIR"
  ${EndIf}
  ClearErrors
  GetTempFileName $1 "$INSTDIR"
  ${If} ${Errors}
    StrCpy $0 "no"
  ${Else}
    StrCpy $0 ""
    Delete "$1"
  ${EndIf}
  ${If} $2 == "0"
    RMDir "$INSTDIR"
  ${EndIf}
FunctionEnd

; The page stays when the user does not want this folder.
Function CheckFolder
  Call TryFolder
  StrCmp $0 "" good
  MessageBox MB_OK|MB_ICONEXCLAMATION \
    "You cannot write to the folder$\r$\n$INSTDIR$\r$\n$\r$\nVantrel keeps its backup sets and its log \
in its own folder. Please choose another one." /SD IDOK
  Abort
good:
FunctionEnd

Section "Vantrel"
  SectionIn RO
  Call TryFolder
  ${If} $0 != ""
    SetErrorLevel 5
    Quit
  ${EndIf}
  Call WaitUntilClosed
  SetOutPath "$INSTDIR\System"
  File "${FILES}\System\FileCopy*.AVI"
  SetOutPath "$INSTDIR"
  File "${FILES}\Vantrel.exe"
  File "${FILES}\vzip.exe"
  File "${FILES}\guide.html"
  ; An existing list of protected folders is the user's.
  SetOverwrite off
  File "${FILES}\Vantrel.Cfg"
  SetOverwrite on
  WriteUninstaller "$INSTDIR\Uninstall.exe"
  CreateShortcut "${SHORTCUT}" "$INSTDIR\Vantrel.exe"
  CreateShortcut "${GUIDE_SHORTCUT}" "$INSTDIR\guide.html"

  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "Vantrel"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "Publisher" "${COMPANY}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\Vantrel.exe"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\Uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\Uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
  SectionGetSize 0 $0
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "EstimatedSize" $0
SectionEnd

Section /o "Shortcut on the desktop" DesktopShortcut
  CreateShortcut "${DESKTOP_SHORTCUT}" "$INSTDIR\Vantrel.exe"
SectionEnd

; The newest function that the program takes from the system tells more than a number.
Function .onInit
  System::Call 'kernel32::GetModuleHandle(t "user32.dll") p .r0'
  System::Call 'kernel32::GetProcAddress(p r0, m "AdjustWindowRectExForDpi") p .r1'
  ${If} $1 P= 0
    MessageBox MB_OK|MB_ICONEXCLAMATION "Vantrel needs Windows 10, version 1607, or later." \
      /SD IDOK
    SetErrorLevel 4
    Quit
  ${EndIf}
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/DESKTOP" $1
  ${IfNot} ${Errors}
    !insertmacro SelectSection ${DesktopShortcut}
  ${EndIf}
FunctionEnd

Section "un.Vantrel"
  SectionIn RO
  Call un.WaitUntilClosed
  Delete "${SHORTCUT}"
  Delete "${GUIDE_SHORTCUT}"
  Delete "${DESKTOP_SHORTCUT}"
  Delete "$INSTDIR\Vantrel.exe"
  Delete "$INSTDIR\vzip.exe"
  Delete "$INSTDIR\guide.html"
  Delete "$INSTDIR\temphtm.HTM"
  Delete "$INSTDIR\System\FileCopy*.AVI"
  RMDir "$INSTDIR\System"
  Delete "$INSTDIR\Uninstall.exe"
  DeleteRegKey HKCU "${UNINSTALL_KEY}"
  RMDir "$INSTDIR"
SectionEnd

; Only where the user asks for it. A folder of the user's choice may hold
; .INI files of other programs: only those that are backup sets go.
Section /o "un.My backup sets, log and protected folders, too" UserFiles
  FindFirst $0 $1 "$INSTDIR\*.INI"
each:
  StrCmp $1 "" done
  ClearErrors
  ReadINIStr $2 "$INSTDIR\$1" "BACKUP SOURCE" "BackupFiles"
  IfErrors next
  Delete "$INSTDIR\$1"
next:
  FindNext $0 $1
  Goto each
done:
  FindClose $0
  Delete "$INSTDIR\Vantrel.Log"
  Delete "$INSTDIR\Vantrel.Bak"
  Delete "$INSTDIR\Vantrel.Cfg"
  Delete "$INSTDIR\Vantrel.Cft"
  DeleteRegKey HKCU "Software\Vantrel"
  RMDir "$INSTDIR"
SectionEnd

; "/EVERYTHING" asks without a window for what the box on the page asks for.
Function un.onInit
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/EVERYTHING" $1
  ${IfNot} ${Errors}
    !insertmacro SelectSection ${UserFiles}
  ${EndIf}
FunctionEnd
