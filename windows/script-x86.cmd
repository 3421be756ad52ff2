@echo off
rem The script host of 32 bits, which can use the 32-bit DLLs of this folder.
setlocal
set "tool=%SystemRoot%\SysWOW64\cscript.exe"
if not exist "%tool%" set "tool=%SystemRoot%\System32\cscript.exe"
"%tool%" %*
exit /b %errorlevel%
