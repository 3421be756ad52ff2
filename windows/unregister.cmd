@echo off
rem Takes back what register.cmd and register-standalone.cmd have written.
rem Arguments go to regsvr32; /s keeps it silent.
setlocal
call "%~dp0regsvr32.cmd" /u %* "%~dp0NorvTolvane.dll"
set "status=%errorlevel%"
call "%~dp0regsvr32.cmd" /u %* "%~dp0NorvStandalone.dll"
if not "%status%"=="0" exit /b %status%
exit /b %errorlevel%
