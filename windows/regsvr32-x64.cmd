@echo off
rem The regsvr32 for 64-bit DLLs, also when it is called from a 32-bit command line.
setlocal
set "tool=%SystemRoot%\Sysnative\regsvr32.exe"
if not exist "%tool%" set "tool=%SystemRoot%\System32\regsvr32.exe"
"%tool%" %*
exit /b %errorlevel%
