#!/usr/bin/env bash
# script_test.sh 32|64 FOLDER SCRIPT LINE: runs SCRIPT on the DLLs in FOLDER; it is to say LINE and nothing else.
set -euo pipefail
size="$1" folder="$2" script="$3" line="$4"
here="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
work="$folder/scripts/$(basename "$script")"
rm -rf "$work"
mkdir -p "$work"
cd "$work"
"$here/register.sh" "$size" "$folder"
said="$("$here/../../tools/wine_run.sh" "$size" cscript //nologo "Z:$script" . | tr -d '\r')" || echo "the script ended with a status of its own"
printf '%s\n' "$said"
[ "$said" = "$line" ]
