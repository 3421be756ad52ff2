@echo off
rem Registers both DLLs of this folder so that the classes work without the suite: on account sets of their own, in files.
rem register.cmd leads back to the suite. Arguments go to regsvr32; /s keeps it silent.
setlocal
call "%~dp0regsvr32.cmd" %* "%~dp0NorvStandalone.dll"
if errorlevel 1 exit /b %errorlevel%
call "%~dp0regsvr32.cmd" %* /i:standalone "%~dp0NorvTolvane.dll"
exit /b %errorlevel%
