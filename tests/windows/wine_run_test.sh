#!/usr/bin/env bash
# wine_run_test.sh 32|64: tools/wine_run.sh runs a script, passes its words and its status on, and ends what hangs.
set -uo pipefail
size="$1"
project="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd -P)"
cd "$project/build/windows" || exit 1
folder="$(mktemp -d wine_run_test.XXXXXX)"
trap 'rm -rf "$project/build/windows/$folder"' EXIT

status=0
# expect WHAT GIVEN EXPECTED
expect() {
  [ "$2" = "$3" ] && return
  echo "$1: $2 where $3 was expected"
  status=1
}

printf 'WScript.Echo "arguments: " & WScript.Arguments(0)\r\nWScript.Quit 5\r\n' > "$folder/script.vbs"
told="$("$project/tools/wine_run.sh" "$size" cscript //nologo "$folder/script.vbs" "two words")"
given=$?
[ "$given" != 77 ] || exit 77
expect "a script's status" "$given" 5
expect "a script's words" "$(tr -d '\r' <<< "$told")" "arguments: two words"

printf 'Do\r\nLoop\r\n' > "$folder/endless.vbs"
TOLVANE_WINE_SECONDS=3 "$project/tools/wine_run.sh" "$size" cscript //nologo "$folder/endless.vbs"
expect "the status of a program that hangs" "$?" 124
exit "$status"
