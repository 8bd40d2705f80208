; The installer of both kinds of package, for the machine or for the user alone.
;     makensis -DVERSION=... -DSTAGE=... -DFILES=... -DICON=... -DSIZE=... -DOUTPUT=... \
;         -DINTERFACE=... -DTYPE_LIBRARY=... -DCLASS=... setup.nsi
; STAGE holds the folders x64 and x86, FILES the macros that list what is in them; the last three are
; the identifiers of the library.
; Without windows: /S, with /AllUsers or /CurrentUser, /PATH for the command, /D=folder at the end.
; It ends with 0; 2 where it is given up; 5 where something fails; 32 where a program uses files of an
; older one; 740 where it is for the machine without an administrator's rights. With 2, 32 and 740 all
; is as it was before, and with 5 unless the older one is gone already.

Unicode true
SetCompressor /SOLID lzma
SetDateSave off
RequestExecutionLevel highest
ManifestDPIAware true
Name "Morandel ${VERSION}"
BrandingText "Morandel ${VERSION}"
OutFile "${OUTPUT}"
InstallDir ""

!include MUI2.nsh
!include nsDialogs.nsh
!include LogicLib.nsh
!include FileFunc.nsh
!include x64.nsh
!include WinMessages.nsh
!include "${FILES}"

!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\Morandel10"
!define CLASSES "Software\Classes"
!define GIVEN_UP 2
!define IN_USE 32
!define FAILED 5
!define NO_RIGHTS 740
!define ERROR_ALREADY_EXISTS 183

Var Scope        ; machine or user
Var Options      ; of regsvr32
Var OldFolder    ; where an older one is; empty if there is none
Var Stage        ; where the files are unpacked
Var InUse        ; the first file that a program is using
Var UserButton
Var MachineButton

!include path.nsh

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_SMALLDESC
!define MUI_CUSTOMFUNCTION_ABORT GivenUp
!define MUI_CUSTOMFUNCTION_UNABORT un.GivenUp
!insertmacro MUI_PAGE_WELCOME
Page custom ScopePage ScopePageLeft
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "SimpChinese"
!include texts.nsh

VIProductVersion "${VERSION}.0"
VIFileVersion "${VERSION}.0"
VIAddVersionKey /LANG=0 "ProductName" "Morandel"
VIAddVersionKey /LANG=0 "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=0 "FileDescription" "Morandel formula calculation, setup"
VIAddVersionKey /LANG=0 "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=0 "LegalCopyright" ""

; The registry as the system's own programs see it.
!macro OWN_VIEW
    ${If} ${RunningX64}
        SetRegView 64
    ${Else}
        SetRegView default
    ${EndIf}
!macroend

; What differs between the scopes, once that is known.
!macro SCOPE_SETTINGS
    ${If} $Scope == machine
        SetShellVarContext all
        StrCpy $Options ""
    ${Else}
        SetShellVarContext current
        StrCpy $Options "/n /i:user"
    ${EndIf}
!macroend

; The folder's full path, by which folders can be compared: nothing of . and .., no backslash at its
; end, and no short names where it is there.
!macro FULL_PATH result folder
    StrCpy $R9 "${folder}"
    System::Call 'kernel32::GetFullPathNameW(w R9, i ${NSIS_MAX_STRLEN}, w .R9, p 0)'
    StrCpy $R8 $R9 1 -1
    ${If} $R8 == "\"
        StrCpy $R9 $R9 -1
    ${EndIf}
    System::Call 'kernel32::GetLongPathNameW(w R9, w .R8, i ${NSIS_MAX_STRLEN}) i .R7'
    ${If} $R7 > 0
        StrCpy $R9 $R8
    ${EndIf}
    StrCpy ${result} $R9
!macroend

; The first of the files below a folder that is in use.
!macro FIND_IN_USE un folder
    StrCpy $R6 "${folder}"
    !insertmacro EACH_FILE_x64 FIND_${un}ONE_IN_USE
    !insertmacro EACH_FILE_x86 FIND_${un}ONE_IN_USE
!macroend
!macro FIND_ONE_IN_USE file
    StrCpy $R9 "$R6\${file}"
    Call FindOneInUse
!macroend
!macro FIND_un.ONE_IN_USE file
    StrCpy $R9 "$R6\${file}"
    Call un.FindOneInUse
!macroend

; Who has loaded a file refuses that others write to it; who has opened it may refuse that it goes.
!macro FIND_ONE_FUNCTION un
Function ${un}FindOneInUse
    ${If} $InUse == ""
    ${AndIf} ${FileExists} "$R9"
    ${AndIfNot} ${FileExists} "$R9\*.*"
        StrCpy $R8 0x40010000  ; GENERIC_WRITE and DELETE
        System::Call 'kernel32::GetFileAttributesW(w R9) i .R7'
        IntOp $R7 $R7 & 1
        ${If} $R7 = 1
            StrCpy $R8 0x10000  ; one may not write to what is read-only, but may delete it
        ${EndIf}
        System::Call 'kernel32::CreateFileW(w R9, i R8, i 7, p 0, i 3, i 0, p 0) p .R8'
        ${If} $R8 = -1
            StrCpy $InUse $R9
        ${Else}
            System::Call 'kernel32::CloseHandle(p R8)'
        ${EndIf}
    ${EndIf}
FunctionEnd
!macroend
!insertmacro FIND_ONE_FUNCTION ""
!insertmacro FIND_ONE_FUNCTION "un."

; What is done with each file or folder of the lists.
!macro PLACE_FILE file
    Delete "$INSTDIR\${file}"
    Rename "$Stage\${file}" "$INSTDIR\${file}"
!macroend
!macro MAKE_FOLDER folder
    CreateDirectory "$INSTDIR\${folder}"
!macroend
!macro REMOVE_FILE file
    Delete "$INSTDIR\${file}"
!macroend
!macro REMOVE_FOLDER folder
    RMDir "$INSTDIR\${folder}"
!macroend

!macro STOP code text
    SetErrorLevel ${code}
    MessageBox MB_OK|MB_ICONSTOP "${text}" /SD IDOK
    Quit
!macroend

; The program's status into $R8, also where it does not even start.
!macro RUN command
    ClearErrors
    ExecWait `${command}` $R8
    ${If} ${Errors}
        StrCpy $R8 ${FAILED}
    ${EndIf}
!macroend

; A 32-bit program reaches the system's own folder by another name.
!macro REGSVR32 kind options
    !if ${kind} == x64
        ${DisableX64FSRedirection}
        !insertmacro RUN '"$WINDIR\system32\regsvr32.exe" /s ${options} $Options "$INSTDIR\x64\bin\Morandel10.dll"'
        ${EnableX64FSRedirection}
    !else
        !insertmacro RUN '"$SYSDIR\regsvr32.exe" /s ${options} $Options "$INSTDIR\x86\bin\Morandel10.dll"'
    !endif
!macroend

Function GivenUp
    SetErrorLevel ${GIVEN_UP}
FunctionEnd
Function un.GivenUp
    SetErrorLevel ${GIVEN_UP}
FunctionEnd

Function FolderOfScope
    !insertmacro SCOPE_SETTINGS
    ReadRegStr $OldFolder SHCTX "${UNINSTALL}" "InstallLocation"
    ${IfNot} ${FileExists} "$OldFolder\uninstall.exe"
        StrCpy $OldFolder ""
    ${EndIf}
FunctionEnd

; The uninstaller serves one scope, and would remove the files of the other one.
Function RefuseFolderOfOtherScope
    ${If} $Scope == machine
        ReadRegStr $0 HKCU "${UNINSTALL}" "InstallLocation"
    ${Else}
        ReadRegStr $0 HKLM "${UNINSTALL}" "InstallLocation"
    ${EndIf}
    ${If} $0 == ""
        Return
    ${EndIf}
    !insertmacro FULL_PATH $0 "$0"
    ${If} $0 == $INSTDIR
        ${If} $Scope == machine
            !insertmacro STOP ${FAILED} "$(HeldForUser)"
        ${Else}
            !insertmacro STOP ${FAILED} "$(HeldForMachine)"
        ${EndIf}
    ${EndIf}
FunctionEnd

Function DefaultFolder
    ${If} $OldFolder != ""
        StrCpy $INSTDIR $OldFolder
    ${ElseIf} $Scope == user
        StrCpy $INSTDIR "$LOCALAPPDATA\Programs\Morandel 10"
    ${ElseIf} ${RunningX64}
        StrCpy $INSTDIR "$PROGRAMFILES64\Morandel 10"
    ${Else}
        StrCpy $INSTDIR "$PROGRAMFILES\Morandel 10"
    ${EndIf}
FunctionEnd

Function ScopePage
    !insertmacro MUI_HEADER_TEXT "$(ScopeTitle)" "$(ScopeQuestion)"
    nsDialogs::Create 1018
    Pop $0
    ${NSD_CreateRadioButton} 0 20u 100% 12u "$(ForUser)"
    Pop $UserButton
    ${NSD_CreateRadioButton} 0 40u 100% 12u "$(ForMachine)"
    Pop $MachineButton
    ${If} $Scope == machine
        ${NSD_Check} $MachineButton
    ${Else}
        ${NSD_Check} $UserButton
    ${EndIf}
    UserInfo::GetAccountType
    Pop $0
    ${If} $0 != "Admin"
        EnableWindow $MachineButton 0
    ${EndIf}
    nsDialogs::Show
FunctionEnd

Function ScopePageLeft
    StrCpy $1 $Scope
    ${NSD_GetState} $MachineButton $0
    ${If} $0 == ${BST_CHECKED}
        StrCpy $Scope machine
    ${Else}
        StrCpy $Scope user
    ${EndIf}
    ${If} $Scope != $1
        Call FolderOfScope
        Call DefaultFolder
        Call PathOfScope
    ${EndIf}
FunctionEnd

Section "!$(LibraryName)" SectionLibrary
    SectionIn RO
    AddSize ${SIZE}
    Call Install
SectionEnd

Section /o "$(PathName)" SectionPath
    !insertmacro COMMAND_FOLDER
    Call AddToPath
SectionEnd

Function PathOfScope
    ReadRegDWORD $0 SHCTX "${UNINSTALL}" "OnPath"
    ${If} $0 == 1
        !insertmacro SelectSection ${SectionPath}
    ${EndIf}
FunctionEnd

Function .onInit
    !insertmacro OWN_VIEW
    ${GetParameters} $R0
    UserInfo::GetAccountType
    Pop $0
    StrCpy $Scope user
    ${If} $0 == "Admin"
        StrCpy $Scope machine
    ${EndIf}
    ClearErrors
    ${GetOptions} $R0 "/CurrentUser" $R1
    ${IfNot} ${Errors}
        StrCpy $Scope user
    ${EndIf}
    ClearErrors
    ${GetOptions} $R0 "/AllUsers" $R1
    ${IfNot} ${Errors}
        StrCpy $Scope machine
        ${If} $0 != "Admin"
            !insertmacro STOP ${NO_RIGHTS} "$(NoRights)"
        ${EndIf}
    ${EndIf}
    Call FolderOfScope
    ${If} $INSTDIR == ""
        ; A folder that cannot be is dropped, and the option with it.
        System::Call 'kernel32::GetCommandLineW() p .R1'
        System::Call 'shlwapi::StrStrIW(p R1, w "/D=") p .R2'
        ${If} $R2 <> 0
            System::Call 'kernel32::lstrcpynW(w .R1, p R2, i ${NSIS_MAX_STRLEN})'
            !insertmacro STOP ${FAILED} "$(BadFolder)"
        ${EndIf}
        Call DefaultFolder
    ${EndIf}
    Call PathOfScope
    ClearErrors
    ${GetOptions} $R0 "/PATH" $R1
    ${IfNot} ${Errors}
        !insertmacro SelectSection ${SectionPath}
    ${EndIf}
FunctionEnd

; A folder beside that of the files, which is made here and so may be deleted; empty where none can be.
Function MakeStage
    ${GetParent} "$INSTDIR" $0
    CreateDirectory "$0"
    StrCpy $0 ""
    ${Do}
        StrCpy $Stage "$INSTDIR.new$0"
        System::Call 'kernel32::CreateDirectoryW(w "$Stage", p 0) i .r1 ?e'
        Pop $2
        IntOp $0 $0 + 1
    ${LoopUntil} $2 != ${ERROR_ALREADY_EXISTS}
    ${If} $1 = 0
        StrCpy $Stage ""
    ${EndIf}
FunctionEnd

Function RemoveStage
    SetOutPath "$TEMP"
    ${If} $Stage != ""
        RMDir /r "$Stage"
        StrCpy $Stage ""
    ${EndIf}
FunctionEnd

Function WriteSettings
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayName" "$(DisplayName) ${VERSION}"
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayVersion" "${VERSION}"
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayIcon" "$INSTDIR\x86\bin\Morandel10.dll,0"
    WriteRegStr SHCTX "${UNINSTALL}" "InstallLocation" "$INSTDIR"
    WriteRegStr SHCTX "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr SHCTX "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD SHCTX "${UNINSTALL}" "EstimatedSize" ${SIZE}
    WriteRegDWORD SHCTX "${UNINSTALL}" "NoModify" 1
    WriteRegDWORD SHCTX "${UNINSTALL}" "NoRepair" 1
FunctionEnd

Function RemoveAgain
    Call RemoveStage
    !insertmacro RUN '"$INSTDIR\uninstall.exe" /S _?=$INSTDIR'
    ${If} $R8 = 0
        Delete "$INSTDIR\uninstall.exe"
    ${EndIf}
    RMDir "$INSTDIR"
FunctionEnd

Function Install
    !insertmacro FULL_PATH $INSTDIR "$INSTDIR"
    Call RefuseFolderOfOtherScope
    again:
    StrCpy $InUse ""
    !insertmacro FIND_IN_USE "" "$INSTDIR"
    ${If} $OldFolder != ""
        !insertmacro FIND_IN_USE "" "$OldFolder"
    ${EndIf}
    ${If} $InUse != ""
        SetErrorLevel ${IN_USE}
        MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(IsInUse)" /SD IDCANCEL IDRETRY again
        Quit
    ${EndIf}
    SetErrorLevel 0

    ; All is unpacked before anything is changed.
    Call MakeStage
    ${If} $Stage == ""
        !insertmacro STOP ${FAILED} "$(CannotUnpack)"
    ${EndIf}
    ClearErrors
    SetOverwrite try
    !insertmacro UNPACK_x86 "$Stage"
    ${If} ${RunningX64}
        !insertmacro UNPACK_x64 "$Stage"
    ${EndIf}
    SetOutPath "$TEMP"
    ${If} ${Errors}
        Call RemoveStage
        !insertmacro STOP ${FAILED} "$(CannotUnpack)"
    ${EndIf}

    ${If} $OldFolder != ""
        !insertmacro RUN '"$OldFolder\uninstall.exe" /S _?=$OldFolder'
        ${If} $R8 != 0
            Call RemoveStage
            !insertmacro STOP $R8 "$(CannotRemoveOld)"
        ${EndIf}
        Delete "$OldFolder\uninstall.exe"
        RMDir "$OldFolder"
    ${EndIf}

    ; What the uninstaller goes by is there first, so that it can remove what is there in part.
    ClearErrors
    CreateDirectory "$INSTDIR"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    Call WriteSettings
    !insertmacro EACH_FOLDER_x86 MAKE_FOLDER
    !insertmacro EACH_FILE_x86 PLACE_FILE
    ${If} ${RunningX64}
        !insertmacro EACH_FOLDER_x64 MAKE_FOLDER
        !insertmacro EACH_FILE_x64 PLACE_FILE
    ${EndIf}
    ${If} ${Errors}
        Call RemoveAgain
        !insertmacro STOP ${FAILED} "$(CannotPlace)"
    ${EndIf}
    Call RemoveStage

    !insertmacro REGSVR32 x86 ""
    StrCpy $R7 $R8
    ${If} ${RunningX64}
        !insertmacro REGSVR32 x64 ""
        ${If} $R7 == 0
            StrCpy $R7 $R8
        ${EndIf}
    ${EndIf}
    ${If} $R7 != 0
        Call RemoveAgain
        !insertmacro STOP ${FAILED} "$(CannotRegister)"
    ${EndIf}
FunctionEnd

Function un.onInit
    !insertmacro OWN_VIEW
    StrCpy $Scope user
    ReadRegStr $0 HKLM "${UNINSTALL}" "InstallLocation"
    !insertmacro FULL_PATH $INSTDIR "$INSTDIR"
    ${If} $0 != ""
        !insertmacro FULL_PATH $0 "$0"
    ${EndIf}
    ${If} $0 == $INSTDIR
        StrCpy $Scope machine
        UserInfo::GetAccountType
        Pop $0
        ${If} $0 != "Admin"
            !insertmacro STOP ${NO_RIGHTS} "$(NoRights)"
        ${EndIf}
    ${EndIf}
    !insertmacro SCOPE_SETTINGS
FunctionEnd

; What the library of one kind removes of the classes when it is unregistered, for one that cannot be
; loaded any more. What both kinds share goes with the last of them.
!macro UNREGISTER kind bits other_bits
    !insertmacro REGSVR32 ${kind} "/u"
    ${If} $R8 != 0
        SetRegView ${bits}
        DeleteRegKey SHCTX "${CLASSES}\CLSID\${CLASS}"
        DeleteRegKey SHCTX "${CLASSES}\TypeLib\${TYPE_LIBRARY}\1.0\0\win${bits}"
        SetRegView ${other_bits}
        ReadRegStr $0 SHCTX "${CLASSES}\CLSID\${CLASS}\InprocServer32" ""
        ${If} $0 == ""
            DeleteRegKey SHCTX "${CLASSES}\Interface\${INTERFACE}"
            SetRegView ${bits}
            DeleteRegKey SHCTX "${CLASSES}\Interface\${INTERFACE}"
            DeleteRegKey SHCTX "${CLASSES}\Morandel10.ComExpress"
            DeleteRegKey SHCTX "${CLASSES}\Morandel10.ComExpress.1"
            DeleteRegKey SHCTX "${CLASSES}\TypeLib\${TYPE_LIBRARY}\1.0"
            DeleteRegKey /ifempty SHCTX "${CLASSES}\TypeLib\${TYPE_LIBRARY}"
        ${EndIf}
        !insertmacro OWN_VIEW
    ${EndIf}
!macroend

Section un.Library
    again:
    StrCpy $InUse ""
    !insertmacro FIND_IN_USE "un." "$INSTDIR"
    ${If} $InUse != ""
        SetErrorLevel ${IN_USE}
        MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(IsInUse)" /SD IDCANCEL IDRETRY again
        Quit
    ${EndIf}
    SetErrorLevel 0
    ${If} ${RunningX64}
        !insertmacro UNREGISTER x64 64 32
    ${EndIf}
    !insertmacro UNREGISTER x86 32 64
    ReadRegDWORD $0 SHCTX "${UNINSTALL}" "OnPath"
    ${If} $0 == 1
        !insertmacro COMMAND_FOLDER
        Call un.RemoveFromPath
    ${EndIf}
    SetOutPath "$TEMP"
    ClearErrors
    !insertmacro EACH_FILE_x86 REMOVE_FILE
    !insertmacro EACH_FILE_x64 REMOVE_FILE
    ${If} ${Errors}
        !insertmacro STOP ${FAILED} "$(CannotRemove)"
    ${EndIf}
    !insertmacro EACH_FOLDER_x86 REMOVE_FOLDER
    !insertmacro EACH_FOLDER_x64 REMOVE_FOLDER
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    DeleteRegKey SHCTX "${UNINSTALL}"
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
    !insertmacro MUI_DESCRIPTION_TEXT ${SectionLibrary} "$(LibraryDescription)"
    !insertmacro MUI_DESCRIPTION_TEXT ${SectionPath} "$(PathDescription)"
!insertmacro MUI_FUNCTION_DESCRIPTION_END
