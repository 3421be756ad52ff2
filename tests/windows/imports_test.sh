#!/usr/bin/env bash
# imports_test.sh OBJDUMP DLL...: the DLLs need libraries that every Windows 7 has, and no others.
set -uo pipefail
objdump="$1"
shift
allowed=(advapi32 bcrypt kernel32 msvcrt ole32 oleaut32 rpcrt4 shell32 shlwapi user32 version)
# In these libraries, but from Windows 8 on only.
newer='GetSystemTimePreciseAsFileTime|WaitOnAddress|WakeByAddress|PathCch|CreateFile2|GetCurrentThreadStackLimits'
status=0
for dll in "$@"; do
  table="$("$objdump" -p "$dll")" || exit 1
  imported="$(sed -n 's/^[[:blank:]]*DLL Name: //p' <<< "$table" | tr '[:upper:]' '[:lower:]' | sort -u)"
  [ -n "$imported" ] || { echo "$dll: no table of imports"; status=1; }
  for name in $imported; do
    case " ${allowed[*]} " in
      *" ${name%.dll} "*) ;;
      *) echo "$dll needs $name"; status=1 ;;
    esac
  done
  if grep -wE "$newer" <<< "$table"; then
    echo "^ $dll needs what Windows 7 does not have"
    status=1
  fi
done
exit "$status"
