; The installer. packaging/windows/installer.sh runs makensis on it with
;   VERSION           of the program, three numbers
;   FILES, SIZE       the instructions that install every file; how many KB they are
;   ICON, OUT         the program's icon; the installer that is made
Target amd64-unicode ; a 32-bit Windows does not start it, and says why
Unicode true
ManifestSupportedOS Win10
RequestExecutionLevel user
SetCompressor /SOLID lzma
AllowSkipFiles off

!include MUI2.nsh
!include LogicLib.nsh
!include FileFunc.nsh
!include WinVer.nsh
!include nsDialogs.nsh
!include "${__FILEDIR__}/common.nsh"

Name "QV1K"
OutFile "${OUT}"
BrandingText "QV1K ${VERSION}"
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "QV1K"
VIAddVersionKey FileDescription "QV1K ${VERSION} installer"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey LegalCopyright ""

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_FINISHPAGE_RUN "$INSTDIR\qv1k-start.exe"
!define MUI_FINISHPAGE_RUN_PARAMETERS "--virtual"
!define MUI_FINISHPAGE_RUN_TEXT "$(TextStart)"
!define MUI_FINISHPAGE_RUN_NOTCHECKED
Page custom AskMode TakeMode
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!include "${__FILEDIR__}/texts.nsh"
!include "${__FILEDIR__}/mode.nsh"
!insertmacro ListFunctions ""
!insertmacro ListFunctions "un."

Function .onInit
  SetRegView 64
  ${IfNot} ${AtLeastWin10}
    !insertmacro Refuse "$(TextSystem)" ${EXIT_SYSTEM}
  ${EndIf}
  !insertmacro ReadMode
FunctionEnd

; A version that is there goes first, wherever it is, but only when nothing of it is in use.
!macro RemoveVersionBefore
  ReadRegStr $R5 SHCTX "${ENTRY}" InstallLocation
  StrCpy $R0 $INSTDIR
  Call WaitUntilFree
  ${If} $R5 != ""
  ${AndIf} $R5 != $INSTDIR
    StrCpy $R0 $R5
    Call WaitUntilFree
    Call RemoveListed
  ${EndIf}
  StrCpy $R0 $INSTDIR
  Call RemoveListed
!macroend

!macro WriteEntry
  WriteRegStr SHCTX "${ENTRY}" DisplayName "QV1K"
  WriteRegStr SHCTX "${ENTRY}" DisplayVersion "${VERSION}"
  WriteRegStr SHCTX "${ENTRY}" DisplayIcon "$INSTDIR\qv1k.exe"
  WriteRegStr SHCTX "${ENTRY}" InstallLocation "$INSTDIR"
  WriteRegStr SHCTX "${ENTRY}" UninstallString '"$INSTDIR\uninstall.exe"'
  WriteRegStr SHCTX "${ENTRY}" QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD SHCTX "${ENTRY}" EstimatedSize ${SIZE}
  WriteRegDWORD SHCTX "${ENTRY}" NoModify 1
  WriteRegDWORD SHCTX "${ENTRY}" NoRepair 1
!macroend

Section
  !insertmacro RemoveVersionBefore
  !include "${FILES}"
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  CreateDirectory "$SMPROGRAMS\QV1K"
  CreateShortcut "$SMPROGRAMS\QV1K\QV1K.lnk" "$INSTDIR\qv1k-start.exe"
  CreateShortcut "$SMPROGRAMS\QV1K\QV1K on the virtual detector.lnk" "$INSTDIR\qv1k-start.exe" "--virtual" \
      "$INSTDIR\qv1k.exe"
  !insertmacro WriteEntry
SectionEnd

Function un.onInit
  SetRegView 64
  SetShellVarContext all
  ReadRegStr $0 HKLM "${ENTRY}" InstallLocation
  ${If} $0 == $INSTDIR
    !insertmacro NeedAdministrator "$INSTDIR\uninstall.exe" ""
  ${Else}
    SetShellVarContext current
  ${EndIf}
FunctionEnd

Section Uninstall
  SetOutPath "$TEMP" ; a folder that is somebody's working folder cannot be removed
  StrCpy $R0 $INSTDIR
  Call un.WaitUntilFree
  Call un.RemoveListed
  ; Another folder's version keeps its entries.
  ReadRegStr $0 SHCTX "${ENTRY}" InstallLocation
  ${If} $0 == $INSTDIR
    Delete "$SMPROGRAMS\QV1K\QV1K.lnk"
    Delete "$SMPROGRAMS\QV1K\QV1K on the virtual detector.lnk"
    RMDir "$SMPROGRAMS\QV1K"
    DeleteRegKey SHCTX "${ENTRY}"
  ${EndIf}
SectionEnd
