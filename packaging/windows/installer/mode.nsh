; For this user, or for all users: /ALLUSERS, /CURRENTUSER, or a page that asks.
Var ForAll       ; 1: for all users
Var IsModeGiven  ; 1: by the command line
Var GivenFolder  ; of /D=
Var RadioAll

!macro ReadMode
  StrCpy $GivenFolder $INSTDIR
  StrCpy $ForAll 0
  StrCpy $IsModeGiven 0
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/CURRENTUSER" $1
  ${IfNot} ${Errors}
    StrCpy $IsModeGiven 1
  ${EndIf}
  ClearErrors
  ${GetOptions} $0 "/ALLUSERS" $1
  ${IfNot} ${Errors}
    StrCpy $IsModeGiven 1
    StrCpy $ForAll 1
  ${EndIf}
  Call UseMode
!macroend

; Turns to the chosen users' Start menu and registry, and to the folder: the given one, that of the version before, or
; the usual one.
Function UseMode
  ${If} $ForAll = 1
    ${If} $GivenFolder == ""
      !insertmacro NeedAdministrator "$EXEPATH" "/ALLUSERS"
    ${Else}
      !insertmacro NeedAdministrator "$EXEPATH" "/ALLUSERS /D=$GivenFolder"
    ${EndIf}
    SetShellVarContext all
    StrCpy $INSTDIR "$PROGRAMFILES64\QV1K"
  ${Else}
    SetShellVarContext current
    StrCpy $INSTDIR "$LOCALAPPDATA\Programs\QV1K"
  ${EndIf}
  ReadRegStr $0 SHCTX "${ENTRY}" InstallLocation
  ${If} $GivenFolder != ""
    StrCpy $INSTDIR $GivenFolder
  ${ElseIf} $0 != ""
    StrCpy $INSTDIR $0
  ${EndIf}
FunctionEnd

Function AskMode
  ${If} $IsModeGiven = 1
    Abort
  ${EndIf}
  !insertmacro MUI_HEADER_TEXT "$(TextModeTitle)" "$(TextModeSubtitle)"
  nsDialogs::Create 1018
  Pop $0
  ${NSD_CreateRadioButton} 0 20u 100% 12u "$(TextModeMine)"
  Pop $0
  ${NSD_Check} $0
  ${NSD_CreateRadioButton} 0 40u 100% 12u "$(TextModeAll)"
  Pop $RadioAll
  ${If} $ForAll = 1
    ${NSD_Uncheck} $0
    ${NSD_Check} $RadioAll
  ${EndIf}
  nsDialogs::Show
FunctionEnd

Function TakeMode
  ${NSD_GetState} $RadioAll $ForAll
  Call UseMode
FunctionEnd
