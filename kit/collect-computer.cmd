@echo off
rem Collects what describes this computer's devices, so that the program can take inventory of it
rem on Linux: collect-computer.cmd FILE.reg   (as an administrator)
rem There: TOLVANIX_MACHINE=FILE.reg tolvanix -i
setlocal
if "%~1"=="" goto usage
if not "%~2"=="" goto usage
if exist "%~1" goto exists

set "part=%TEMP%\tolvanix-%RANDOM%-%RANDOM%"
set "key=HKLM\SYSTEM\CurrentControlSet\Enum"
reg export "%key%" "%part%-1.reg" /y >nul
if errorlevel 1 goto unread
set "key=HKLM\SYSTEM\CurrentControlSet\Control\Class"
reg export "%key%" "%part%-2.reg" /y >nul
if errorlevel 1 goto unread
set "key=HKLM\SOFTWARE\Microsoft\Windows NT\CurrentVersion"
reg export "%key%" "%part%-3.reg" /y >nul
if errorlevel 1 goto unread
copy /b "%part%-1.reg"+"%part%-2.reg"+"%part%-3.reg" "%~1" >nul 2>&1
if errorlevel 1 goto unwritten
if not exist "%~1" goto unwritten
del "%part%-?.reg"
exit /b 0

:unread
>&2 echo collect-computer.cmd: %key% cannot be exported; run this as an administrator
goto failed
:unwritten
>&2 echo collect-computer.cmd: "%~1" cannot be written
:failed
del "%part%-?.reg" 2>nul
exit /b 1

:exists
>&2 echo collect-computer.cmd: "%~1" exists already
exit /b 2

:usage
>&2 echo usage: collect-computer.cmd FILE.reg
exit /b 2
