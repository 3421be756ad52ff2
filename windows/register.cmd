@echo off
rem Registers NorvTolvane.dll of this folder: for everybody when run as administrator, otherwise for you alone.
rem Arguments go to regsvr32; /s keeps it silent.
setlocal
call "%~dp0regsvr32.cmd" %* "%~dp0NorvTolvane.dll"
exit /b %errorlevel%
