@echo off
rem Tries the classes of this folder without the suite; register-standalone.cmd comes first.
rem An argument names the account set's file; without one it lies among your temporary files.
setlocal
call "%~dp0script.cmd" //nologo "%~dp0..\samples\try.vbs" %*
exit /b %errorlevel%
