@echo off
rem Collects what describes this computer's devices, so that the program can take inventory of it
rem on Linux: collect-computer.cmd FILE.reg   (as an administrator)
rem There: TOLVANIX_MACHINE=FILE.reg tolvanix -i
setlocal
if "%~1"=="" goto usage
if not "%~2"=="" goto usage
if exist "%~1" goto exists

set part=%TEMP%\tolvanix-%RANDOM%-%RANDOM%
call :export 1 "HKLM\SYSTEM\CurrentControlSet\Enum" || goto failed
call :export 2 "HKLM\SYSTEM\CurrentControlSet\Control\Class" || goto failed
call :export 3 "HKLM\SOFTWARE\Microsoft\Windows NT\CurrentVersion" || goto failed
copy /b "%part%-1.reg"+"%part%-2.reg"+"%part%-3.reg" "%~1" >nul || goto unwritten
del "%part%-?.reg"
exit /b 0

:export
reg export %2 "%part%-%1.reg" /y >nul && exit /b 0
echo collect-computer.cmd: %2 cannot be exported; run this as an administrator >&2
exit /b 1

:unwritten
echo collect-computer.cmd: "%~1" cannot be written >&2
:failed
del "%part%-?.reg" 2>nul
exit /b 1

:exists
echo collect-computer.cmd: "%~1" exists already >&2
exit /b 2

:usage
echo collect-computer.cmd: usage: collect-computer.cmd FILE.reg >&2
exit /b 2
