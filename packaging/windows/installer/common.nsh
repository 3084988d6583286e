; What installing and uninstalling share: how a refusal is told, and the list of what was installed.

!define ENTRY "Software\Microsoft\Windows\CurrentVersion\Uninstall\QV1K"
!define LIST "installed.txt"

; Exit codes; 1 and 2 are those of a user who cancels and of a file that could not be written.
!define EXIT_SYSTEM 3
!define EXIT_RIGHTS 4
!define EXIT_BUSY 5

!macro Refuse TEXT CODE
  MessageBox MB_OK|MB_ICONSTOP "${TEXT}" /SD IDOK
  SetErrorLevel ${CODE}
  Quit
!macroend

; For all users, an administrator is needed: FILE is started as one, unless nobody is there to be asked.
!macro NeedAdministrator FILE ARGUMENTS
  UserInfo::GetAccountType
  Pop $0
  ${If} $0 != "Admin"
    ${If} ${Silent}
      !insertmacro Refuse "$(TextRights)" ${EXIT_RIGHTS}
    ${EndIf}
    ExecShell "runas" "${FILE}" '${ARGUMENTS}'
    Quit
  ${EndIf}
!macroend

; The list names a file a line, by its path in the folder, and after them the folders, the innermost first, with a
; backslash at their end. Lines end with CR and LF.
!macro ListFunctions UN

; Sets $R1 to the path of a file of the list of folder $R0 that is in use or cannot be written, or to nothing.
Function ${UN}FindBusy
  StrCpy $R1 ""
  ClearErrors
  FileOpen $R2 "$R0\${LIST}" r
  ${If} ${Errors}
    Return
  ${EndIf}
  ${Do}
    ClearErrors
    FileRead $R2 $R3
    ${If} ${Errors}
      ${ExitDo}
    ${EndIf}
    StrCpy $R3 $R3 -2
    StrCpy $R4 $R3 1 -1
    ${If} $R4 != "\"
    ${AndIf} ${FileExists} "$R0\$R3"
      ClearErrors
      FileOpen $R4 "$R0\$R3" a
      ${If} ${Errors}
        StrCpy $R1 "$R0\$R3"
        ${ExitDo}
      ${EndIf}
      FileClose $R4
    ${EndIf}
  ${Loop}
  FileClose $R2
FunctionEnd

; Goes on when no file of the list of folder $R0 is in use.
Function ${UN}WaitUntilFree
  ${Do}
    Call ${UN}FindBusy
    ${If} $R1 == ""
      Return
    ${EndIf}
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(TextBusy)" /SD IDCANCEL IDRETRY +3
    SetErrorLevel ${EXIT_BUSY}
    Quit
  ${Loop}
FunctionEnd

; Removes what the list of folder $R0 names, and the folder when nothing else is in it.
Function ${UN}RemoveListed
  ClearErrors
  FileOpen $R2 "$R0\${LIST}" r
  ${If} ${Errors}
    Return
  ${EndIf}
  ${Do}
    ClearErrors
    FileRead $R2 $R3
    ${If} ${Errors}
      ${ExitDo}
    ${EndIf}
    StrCpy $R3 $R3 -2
    StrCpy $R4 $R3 1 -1
    ${If} $R4 == "\"
      RMDir "$R0\$R3"
    ${Else}
      Delete "$R0\$R3"
    ${EndIf}
  ${Loop}
  FileClose $R2
  Delete "$R0\${LIST}"
  Delete "$R0\uninstall.exe"
  RMDir "$R0"
FunctionEnd

!macroend
