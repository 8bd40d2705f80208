; What the installer says, in its two languages.

!macro TEXT name english chinese
    LangString ${name} ${LANG_ENGLISH} "${english}"
    LangString ${name} ${LANG_SIMPCHINESE} "${chinese}"
!macroend

!insertmacro TEXT DisplayName "Morandel formula calculation" "Morandel 公式计算"
!insertmacro TEXT ScopeTitle "For whom" "为谁安装"
!insertmacro TEXT ScopeQuestion "Who is to use the library?" "谁要使用这个库？"
!insertmacro TEXT ForUser "For me alone, without an administrator's rights" "只为我自己，不需要管理员权限"
!insertmacro TEXT ForMachine "For everybody on this machine" "为这台机器上的所有用户"
!insertmacro TEXT LibraryName "Library, command, examples" "库、命令、示例"
!insertmacro TEXT LibraryDescription "Both kinds, for 64- and 32-bit programs, registered." "64 位和 32 位两种，并且注册。"
!insertmacro TEXT PathName "The command on the path" "把命令加入路径"
!insertmacro TEXT PathDescription "So that a command prompt finds morandel." "让命令提示符能找到 morandel。"
!insertmacro TEXT IsInUse "A program is using this file:$\r$\n$InUse$\r$\n$\r$\nEnd that program, then try again. Nothing has been changed." "有程序正在使用这个文件：$\r$\n$InUse$\r$\n$\r$\n请结束该程序后重试。尚未作任何更改。"
!insertmacro TEXT NoRights "This needs an administrator's rights. Nothing has been changed." "这需要管理员权限。未作任何更改。"
!insertmacro TEXT CannotUnpack "The files cannot be unpacked. Nothing has been changed." "文件不能解开。未作任何更改。"
!insertmacro TEXT CannotRemoveOld "The older version cannot be removed." "不能删除旧版本。"
!insertmacro TEXT CannotRegister "The library cannot be registered; it has been removed again." "不能注册这个库，已经重新删除。"
!insertmacro TEXT CannotPlace "The files cannot be put into the folder; they have been removed again." "不能把文件放入文件夹，已经重新删除。"
!insertmacro TEXT CannotRemove "Not all files can be removed. Remove it once more later." "有文件不能删除。请稍后再卸载一次。"
!insertmacro TEXT BadFolder "This is no folder to install to:$\r$\n$R1$\r$\n$\r$\nNothing has been changed." "不能安装到这个文件夹：$\r$\n$R1$\r$\n$\r$\n未作任何更改。"
!insertmacro TEXT HeldForUser "Morandel is installed in this folder for you alone. Take another folder, or remove that first. Nothing has been changed." "这个文件夹中已有只为您自己安装的 Morandel。请换一个文件夹，或先卸载它。未作任何更改。"
!insertmacro TEXT HeldForMachine "Morandel is installed in this folder for everybody on this machine. Take another folder, or remove that first. Nothing has been changed." "这个文件夹中已有为所有用户安装的 Morandel。请换一个文件夹，或先卸载它。未作任何更改。"
