; The demo product's installer. It installs the game, the launcher and the launcher's
; data folder, records the installation under the product's registry key (the values
; the launcher reads) and writes an uninstaller that removes all of it again.
; Works interactively and silently (/S; /D=FOLDER chooses the folder).
;
; Defined by the build: OUTFILE, MEDIA (the assembled media folder), GAME (folder of
; Tarn.exe and trnmp.exe), REGKEY (the product's key below HKLM).
Unicode true
Target amd64-unicode
!include "FileFunc.nsh"

Name "Tarn"
Caption "Tarn Setup"
OutFile "${OUTFILE}"
InstallDir "$PROGRAMFILES64\Tarn"
RequestExecutionLevel admin
ShowInstDetails show

Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

Section "Tarn"
  SetRegView 64
  SetOutPath "$INSTDIR"
  File "${MEDIA}\Launcher.exe"
  File "${GAME}\Tarn.exe"
  File "${GAME}\trnmp.exe"
  CreateDirectory "$INSTDIR\GameData"
  SetOutPath "$INSTDIR\Install"
  File /r /x "TarnSetup.exe" "${MEDIA}\Install\*.*"

  ; The launcher's data folder lies below the launcher; the installation came from the
  ; folder above the one this installer runs from.
  ${GetParent} "$EXEDIR" $0
  WriteRegDWORD HKLM "${REGKEY}" "Installed" 2
  WriteRegStr HKLM "${REGKEY}" "Install Path" "$INSTDIR"
  WriteRegStr HKLM "${REGKEY}" "Source Dir" "$0"
  WriteRegStr HKLM "${REGKEY}" "UninstallString" "$INSTDIR\Uninstall.exe"
  WriteUninstaller "$INSTDIR\Uninstall.exe"
SectionEnd

Section "Uninstall"
  SetRegView 64
  Delete "$INSTDIR\Launcher.exe"
  Delete "$INSTDIR\Tarn.exe"
  Delete "$INSTDIR\trnmp.exe"
  RMDir /r "$INSTDIR\Install"
  RMDir "$INSTDIR\GameData"
  Delete "$INSTDIR\Uninstall.exe"
  RMDir "$INSTDIR"
  DeleteRegKey HKLM "${REGKEY}"
  DeleteRegKey /ifempty HKLM "${REGPARENT}"
SectionEnd
