#!/usr/bin/env bash
# A tour of the main job on the demonstration account set: every step is shown as the command that one could type.
#
#   samples/tour.sh FOLDER     makes FOLDER/demo.db and goes through it; FOLDER must not hold one yet
#
# TOLVANE names the program (default: tolvane).
set -euo pipefail
samples="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
tolvane="${TOLVANE:-tolvane}"
folder="${1:?usage: tour.sh FOLDER}"
mkdir -p "$folder"
cd "$folder"
export TOLVANE_DSN="Database=demo.db"
document="$samples/documents/income_monthly.xlsx"

bold=
plain=
if [ -t 1 ]; then
  bold=$'\033[1m'
  plain=$'\033[0m'
fi

title() { printf '\n%s%s%s\n' "$bold" "$*" "$plain"; }

# The command line as one would type it: words that need quotes get them.
show() {
  local word line='$'
  for word in "$@"; do
    if [[ "$word" =~ ^[A-Za-z0-9_./=@:,-]+$ ]]; then line+=" $word"; else line+=" '${word//\'/\'\\\'\'}'"; fi
  done
  printf '%s\n' "${line//"$samples"/samples}"
}

# step ARGUMENT...: shows a call of the program and its result.
step() {
  show tolvane "$@"
  "$tolvane" "$@"
}

# refused ARGUMENT...: a call that is expected to end with the system's own error.
refused() {
  local status=0
  show tolvane "$@"
  "$tolvane" "$@" || status=$?
  [ "$status" = 1 ] || { echo "the call ended with status $status, not with an error of the system" >&2; exit 1; }
}

title "1. A new account set with the demonstration's data"
step init --dsn "$TOLVANE_DSN" --sample
show export "TOLVANE_DSN=$TOLVANE_DSN"

title "2. What can be called"
step classes
step describe SrvRptUpdate.SavePlxToSrv

title "3. A designer saves a report: the document is a spreadsheet file"
save=(call SrvRptUpdate.SavePlxToSrv 'sSysName="报表系统"' 'sRptName="六月利润月报"' "vPlx=@$document" lOwner=1
  lYear=2025 lPeriod=6)
show tolvane "${save[@]}"
saved="$("$tolvane" "${save[@]}")"
printf '%s\n' "$saved"
report="$(sed -n 's/.*"result": *\([0-9][0-9]*\).*/\1/p' <<< "$saved")"
[ -n "$report" ] || { echo "the report was not saved" >&2; exit 1; }

title "4. It is in the list, among the others"
step call --table SrvRptRetrieve.GetRptlistOrderBy 'sOrderStr="FRptID DESC"' lGetStyle=3

title "5. The function menu was rebuilt: entries by classification, and the reports under each"
step sql "select FSubFuncID, FFuncName, FFuncName_En from t_LocalSubFunc order by FIndex"
step sql "select top 12 FSubFuncID, FDetailFuncID, FFuncName from t_LocalDetailFunc order by FSubFuncID, FIndex"

title "6. The document comes back as it was saved, byte for byte"
fetch=(call SrvRptRetrieve.GetRptPlx "lRptID=$report")
show tolvane "${fetch[@]}"
"$tolvane" "${fetch[@]}" > fetched.json
printf '%.100s...\n' "$(cat fetched.json)"
sed -n 's/.*"vPlx": *{"$bytes": *"\([^"]*\)".*/\1/p' fetched.json | base64 -d > fetched.xlsx
show cmp "$document" fetched.xlsx
cmp "$document" fetched.xlsx
printf 'no difference in %s bytes\n' "$(wc -c < fetched.xlsx)"

title "7. Rights: the creator's, and who may do what with a report of the demonstration"
step call SrvRptRetrieve.GetRptRight "lRptID=$report"
step sql "select u.FName, r.FRightCode from t_Rpt_Right r, t_User u where u.FUserID = r.FUserID and r.FRptID = 1"
step call SrvRptRetrieve.GetRptAuthorize lRptID=1

title "8. The same list for another user, in English: only what she may see"
step call --table --dsn "$TOLVANE_DSN;UserID=106;Language=en" SrvRptRetrieve.GetRptlistWeb

title "9. Classification: the standards, their items, the reports filed under one"
step call --table RptPropItemClassInfo.GetList
step call --table RptPropItemClassInfo.GetAllPropName
step call --table RptPropItemClassInfo.GetRptByProp 'sPropName="(用途)-对外报送"'

title "10. What is refused says why, in the caller's language"
refused call --dsn "$TOLVANE_DSN;Language=en" SrvRptUpdate.SavePlxToSrv 'sSysName="GL"' 'sRptName="  "' \
  "vPlx=@$document" lOwner=1

title "11. The account set is an ordinary database"
look="select FRptID, FRptName, FRptType, length(FRptData) from t_Rpt_Content where FRptID >= $((report - 3))"
show sqlite3 -box demo.db "$look"
sqlite3 -box demo.db "$look"

title "The account set stays in $folder/demo.db"
