@echo off
rem The regsvr32 for 32-bit DLLs, on Windows of either word size.
setlocal
set "tool=%SystemRoot%\SysWOW64\regsvr32.exe"
if not exist "%tool%" set "tool=%SystemRoot%\System32\regsvr32.exe"
"%tool%" %*
exit /b %errorlevel%
