; The installer of both kinds of package, for the machine or for the user alone.
;     makensis -DVERSION=... -DSTAGE=... -DFILES=... -DICON=... -DSIZE=... -DOUTPUT=... setup.nsi
; STAGE holds the folders x64 and x86, FILES the macros that list what is in them.
; Without windows: /S, with /AllUsers or /CurrentUser, /PATH for the command, /D=folder at the end.
; It ends with 0; 2 where it is given up; 5 where something fails; 32 where a program has files of an
; older one loaded; 740 where it is for the machine without an administrator's rights. But for 0 and a
; registration that fails, all is as it was before.

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
!define GIVEN_UP 2
!define IN_USE 32
!define FAILED 5
!define NO_RIGHTS 740

Var Scope        ; machine or user
Var Options      ; of regsvr32
Var OldFolder    ; where an older one is; empty if there is none
Var InUse        ; the first file that a program has loaded
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

; The first of the loadable files below a folder that cannot be opened for writing.
!macro FIND_IN_USE folder
    !insertmacro FIND_ONE_IN_USE "${folder}\x64\bin\Morandel10.dll"
    !insertmacro FIND_ONE_IN_USE "${folder}\x64\bin\morandel.exe"
    !insertmacro FIND_ONE_IN_USE "${folder}\x86\bin\Morandel10.dll"
    !insertmacro FIND_ONE_IN_USE "${folder}\x86\bin\morandel.exe"
!macroend
!macro FIND_ONE_IN_USE file
    ${If} $InUse == ""
    ${AndIf} ${FileExists} "${file}"
        ClearErrors
        FileOpen $R9 "${file}" a
        ${If} ${Errors}
            StrCpy $InUse "${file}"
        ${Else}
            FileClose $R9
        ${EndIf}
    ${EndIf}
!macroend

!macro STOP code text
    SetErrorLevel ${code}
    MessageBox MB_OK|MB_ICONSTOP "${text}" /SD IDOK
    Quit
!macroend

; A 32-bit program reaches the system's own folder by another name.
!macro REGSVR32 kind options
    !if ${kind} == x64
        ${DisableX64FSRedirection}
        ExecWait '"$WINDIR\system32\regsvr32.exe" /s ${options} $Options "$INSTDIR\x64\bin\Morandel10.dll"' $R8
        ${EnableX64FSRedirection}
    !else
        ExecWait '"$SYSDIR\regsvr32.exe" /s ${options} $Options "$INSTDIR\x86\bin\Morandel10.dll"' $R8
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
    WriteRegDWORD SHCTX "${UNINSTALL}" "OnPath" 1
SectionEnd

Function PathOfScope
    ReadRegDWORD $0 SHCTX "${UNINSTALL}" "OnPath"
    ${If} $0 == 1
        !insertmacro SelectSection ${SectionPath}
    ${EndIf}
FunctionEnd

Function .onInit
    ${If} ${RunningX64}
        SetRegView 64
    ${EndIf}
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
        Call DefaultFolder
    ${EndIf}
    Call PathOfScope
    ClearErrors
    ${GetOptions} $R0 "/PATH" $R1
    ${IfNot} ${Errors}
        !insertmacro SelectSection ${SectionPath}
    ${EndIf}
FunctionEnd

Function Install
    again:
    StrCpy $InUse ""
    !insertmacro FIND_IN_USE "$INSTDIR"
    ${If} $OldFolder != ""
    ${AndIf} $OldFolder != $INSTDIR
        !insertmacro FIND_IN_USE "$OldFolder"
    ${EndIf}
    ${If} $InUse != ""
        SetErrorLevel ${IN_USE}
        MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(IsInUse)" /SD IDCANCEL IDRETRY again
        Quit
    ${EndIf}
    SetErrorLevel 0

    ; All is unpacked before anything is changed.
    RMDir /r "$INSTDIR.new"
    ClearErrors
    SetOverwrite try
    !insertmacro UNPACK_x86 "$INSTDIR.new\x86"
    ${If} ${RunningX64}
        !insertmacro UNPACK_x64 "$INSTDIR.new\x64"
    ${EndIf}
    SetOutPath "$TEMP"
    ${If} ${Errors}
        RMDir /r "$INSTDIR.new"
        !insertmacro STOP ${FAILED} "$(CannotUnpack)"
    ${EndIf}

    ${If} $OldFolder != ""
        ExecWait '"$OldFolder\uninstall.exe" /S _?=$OldFolder' $R8
        ${If} $R8 != 0
            RMDir /r "$INSTDIR.new"
            !insertmacro STOP $R8 "$(CannotRemoveOld)"
        ${EndIf}
        Delete "$OldFolder\uninstall.exe"
        RMDir "$OldFolder"
    ${EndIf}

    CreateDirectory "$INSTDIR"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    !insertmacro PUT_IN_PLACE x86
    !insertmacro PUT_IN_PLACE x64
    RMDir /r "$INSTDIR.new"

    WriteRegStr SHCTX "${UNINSTALL}" "DisplayName" "$(DisplayName) ${VERSION}"
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayVersion" "${VERSION}"
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayIcon" "$INSTDIR\x86\bin\Morandel10.dll,0"
    WriteRegStr SHCTX "${UNINSTALL}" "InstallLocation" "$INSTDIR"
    WriteRegStr SHCTX "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr SHCTX "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD SHCTX "${UNINSTALL}" "EstimatedSize" ${SIZE}
    WriteRegDWORD SHCTX "${UNINSTALL}" "NoModify" 1
    WriteRegDWORD SHCTX "${UNINSTALL}" "NoRepair" 1

    !insertmacro REGSVR32 x86 ""
    StrCpy $R7 $R8
    ${If} ${RunningX64}
        !insertmacro REGSVR32 x64 ""
        ${If} $R7 == 0
            StrCpy $R7 $R8
        ${EndIf}
    ${EndIf}
    ${If} $R7 != 0
        ExecWait '"$INSTDIR\uninstall.exe" /S _?=$INSTDIR'
        Delete "$INSTDIR\uninstall.exe"
        RMDir "$INSTDIR"
        !insertmacro STOP ${FAILED} "$(CannotRegister)"
    ${EndIf}
FunctionEnd

Function un.onInit
    ${If} ${RunningX64}
        SetRegView 64
    ${EndIf}
    StrCpy $Scope user
    ReadRegStr $0 HKLM "${UNINSTALL}" "InstallLocation"
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

Section un.Library
    again:
    StrCpy $InUse ""
    !insertmacro FIND_IN_USE "$INSTDIR"
    ${If} $InUse != ""
        SetErrorLevel ${IN_USE}
        MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(IsInUse)" /SD IDCANCEL IDRETRY again
        Quit
    ${EndIf}
    SetErrorLevel 0
    ${If} ${RunningX64}
        !insertmacro REGSVR32 x64 "/u"
    ${EndIf}
    !insertmacro REGSVR32 x86 "/u"
    ReadRegDWORD $0 SHCTX "${UNINSTALL}" "OnPath"
    ${If} $0 == 1
        !insertmacro COMMAND_FOLDER
        Call un.RemoveFromPath
    ${EndIf}
    SetOutPath "$TEMP"
    !insertmacro REMOVE_x86 "$INSTDIR\x86"
    !insertmacro REMOVE_x64 "$INSTDIR\x64"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    DeleteRegKey SHCTX "${UNINSTALL}"
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
    !insertmacro MUI_DESCRIPTION_TEXT ${SectionLibrary} "$(LibraryDescription)"
    !insertmacro MUI_DESCRIPTION_TEXT ${SectionPath} "$(PathDescription)"
!insertmacro MUI_FUNCTION_DESCRIPTION_END
