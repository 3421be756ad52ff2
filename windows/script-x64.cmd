@echo off
rem The script host of 64 bits, which can use the 64-bit DLLs of this folder.
setlocal
set "tool=%SystemRoot%\Sysnative\cscript.exe"
if not exist "%tool%" set "tool=%SystemRoot%\System32\cscript.exe"
"%tool%" %*
exit /b %errorlevel%
