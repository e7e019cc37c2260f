@echo off
rem Updates the drivers of this computer, for deployment tools:
rem   install.cmd [folder of the package] [folder for result.xml and trace.log]
rem Ends with 0, with 3010 when the computer must be restarted, else with the program's exit code.
rem Without folders: the package is beside this file, the results go to %TEMP%.
setlocal
set "package=%~f1"
if "%~1"=="" set "package=%~dp0."
set "results=%~f2"
if "%~2"=="" set "results=%TEMP%"

rem What an earlier run left is no result of this one, should it end before its document begins.
if exist "%results%\result.xml" del "%results%\result.xml"
"%package%\tolvanix.exe" -u -o "%results%\result.xml" -d=4 -e "%results%\trace.log"
set "code=%ERRORLEVEL%"
if not "%code%"=="0" exit /b %code%
rem The trace, since the document is one line, which may be longer than find can take.
"%SystemRoot%\System32\find.exe" "UpdateValidatedDevices: reboot = 1" "%results%\trace.log" >nul
if not errorlevel 1 exit /b 3010
exit /b 0
