#!/usr/bin/env bash
# tour_test.sh 32|64 FOLDER PROGRAM: plays the tour of the command line from VBScript on the DLLs in FOLDER, and compares the
# account sets with those that PROGRAM, the command line, made on its own tour: the same rows, but for the moment at which
# reports were saved.
set -euo pipefail
size="$1" folder="$2" program="$3"
here="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
project="$here/../.."
wine="$project/tools/wine_run.sh"
[ -x "$program" ] || { echo "the command line $program was not built; ./dev test builds both" >&2; exit 77; }

work="$folder/tour"
rm -rf "$work"
mkdir -p "$work/script"
{ printf '\xff\xfe'; iconv -f UTF-8 -t UTF-16LE "$here/tour_texts.txt"; } > "$work/texts.txt"
cd "$work"
"$here/register.sh" "$size" "$folder"
said="$("$wine" "$size" cscript //nologo "Z:$here/tour.vbs" script texts.txt | tr -d '\r')" || echo "the script ended with a status of its own"
printf '%s\n' "$said"
[ "$said" = "the tour is done" ]

TOLVANE="$program" "$project/samples/tour.sh" "$work/command" > "$work/command.txt"
# The command line's tour ends the conversion with the command that does it for all groups.
"$program" upgrade --dsn "Database=$work/script/older.db" > /dev/null
for made in command script; do
  "$program" sql --dsn "Database=$work/$made/demo.db" \
    "update t_Rpt_Content set FLastDate = '20250101' where FLastDate > dateadd(day, -2, getdate())" > /dev/null
done
for set in demo older; do
  "$program" compare --dsn "Database=$work/command/$set.db" --dsn "Database=$work/script/$set.db"
done
