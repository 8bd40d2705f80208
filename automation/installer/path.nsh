; The search path of the scope. It may be longer than a text of the installer can be, so it stays in
; memory of the system's: $4, with a semicolon before and after, so that every folder has both.

!define ENVIRONMENT_RIGHTS 0x2011F  ; reading and writing, in the system's own view

; The folder of the command, into $2.
!macro COMMAND_FOLDER
    ${If} ${RunningX64}
        StrCpy $2 "$INSTDIR\x64\bin"
    ${Else}
        StrCpy $2 "$INSTDIR\x86\bin"
    ${EndIf}
!macroend

; $0: the key; $1: the value's type; $4: the text
!macro READ_PATH
    ${If} $Scope == machine
        System::Call 'advapi32::RegOpenKeyExW(p 0x80000002, w "SYSTEM\CurrentControlSet\Control\Session Manager\Environment", i 0, i ${ENVIRONMENT_RIGHTS}, *p .r0)'
    ${Else}
        System::Call 'advapi32::RegOpenKeyExW(p 0x80000001, w "Environment", i 0, i ${ENVIRONMENT_RIGHTS}, *p .r0)'
    ${EndIf}
    StrCpy $1 2  ; REG_EXPAND_SZ, where there is none yet
    StrCpy $3 0
    System::Call 'advapi32::RegQueryValueExW(p r0, w "Path", p 0, *i r1r1, p 0, *i r3r3)'
    IntOp $5 $3 + 4096
    System::Call 'kernel32::GlobalAlloc(i 0x40, p r5) p .r4'
    System::Call 'kernel32::lstrcpyW(p r4, w ";")'
    ${If} $3 > 0
        IntPtrOp $6 $4 + 2
        System::Call 'advapi32::RegQueryValueExW(p r0, w "Path", p 0, p 0, p r6, *i r3r3)'
    ${EndIf}
    System::Call 'kernel32::lstrcatW(p r4, w ";")'
    System::Call 'shlwapi::StrStrIW(p r4, w ";$2;") p .r5'
!macroend

; Without the semicolons around it; an empty path is none.
!macro WRITE_PATH
    System::Call 'kernel32::lstrlenW(p r4) i .r3'
    ${If} $3 < 3
        System::Call 'advapi32::RegDeleteValueW(p r0, w "Path")'
    ${Else}
        IntOp $6 $3 - 1
        IntOp $6 $6 * 2
        IntPtrOp $7 $4 + $6
        System::Call 'kernel32::lstrcpyW(p r7, w "")'
        IntPtrOp $7 $4 + 2
        System::Call 'advapi32::RegSetValueExW(p r0, w "Path", i 0, i r1, p r7, i r6)'
    ${EndIf}
    SendMessage ${HWND_BROADCAST} ${WM_SETTINGCHANGE} 0 "STR:Environment" /TIMEOUT=5000
!macroend

!macro CLOSE_PATH
    System::Call 'kernel32::GlobalFree(p r4)'
    System::Call 'advapi32::RegCloseKey(p r0)'
!macroend

; What was there before is left there by the removal, so only what is added here is noted.
Function AddToPath
    !insertmacro READ_PATH
    ${If} $5 = 0
        System::Call 'kernel32::lstrlenW(p r4) i .r3'
        ${If} $3 == 2
            System::Call 'kernel32::lstrcpyW(p r4, w ";")'
        ${EndIf}
        System::Call 'kernel32::lstrcatW(p r4, w "$2;")'
        !insertmacro WRITE_PATH
        WriteRegDWORD SHCTX "${UNINSTALL}" "OnPath" 1
    ${EndIf}
    !insertmacro CLOSE_PATH
FunctionEnd

Function un.RemoveFromPath
    !insertmacro READ_PATH
    ${If} $5 <> 0
        StrLen $6 ";$2"
        IntOp $6 $6 * 2
        IntPtrOp $7 $5 + $6
        System::Call 'kernel32::lstrlenW(p r7) i .r6'
        IntOp $6 $6 + 1
        IntOp $6 $6 * 2
        System::Call 'kernel32::RtlMoveMemory(p r5, p r7, p r6)'
        !insertmacro WRITE_PATH
    ${EndIf}
    !insertmacro CLOSE_PATH
FunctionEnd
