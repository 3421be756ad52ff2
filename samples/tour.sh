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

# The one number that a query gives.
number() { "$tolvane" sql --json "$1" | tr -d '\n ' | sed -n 's/.*"rows":\[\[\([0-9]*\)\]\].*/\1/p'; }

# The function menu: the sub-functions, and under each its entries.
menu_tree() {
  local query="select s.FFuncName, d.FFuncName from t_LocalSubFunc s left join t_LocalDetailFunc d
    on d.FSubFuncID = s.FSubFuncID order by s.FIndex, d.FIndex"
  "$tolvane" sql --json "$query" | tr -d '\n' | sed 's/.*"rows": *\[ *\[//; s/\] *\].*//; s/\], *\[/\n/g; $a\' |
    awk -F '", *"?' '{ gsub(/^ *"/, "", $1); gsub(/" *$/, "", $2)
      if ($1 != last) { print $1; last = $1 }
      if ($2 != "null") print "  |- " $2 }'
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

title "11. A standard and items of one's own; reports are filed under them"
step call RptPropItemClassUpdate.Create 'Properties={"FName":"周期"}'
step sql "select FPropClsID, FName from t_Rpt_PropClass"
standard="$(number "select max(FPropClsID) from t_Rpt_PropClass")"
step call RptPropItemUpdate.Create "PropClsID=$standard" 'Properties={"FNumber":"01","FName":"月报"}'
item="$(number "select max(FPropItemID) from t_Rpt_PropItem")"
step call SrvRptUpdate.SetReportProp "lRptID=$report" "Properties={\"$standard\":$item}"
step call SrvRptUpdate.SetReportProp lRptID=5 "Properties={\"$standard\":$item}"
step call RptPropItemUpdate.Create "PropClsID=$standard" 'Properties={"FNumber":"02","FName":"季报"}'

title "12. The function menu as it is now"
menu_tree

title "13. Rights on a report are replaced as a whole"
step call SrvRptUpdate.SetRptRight "lRptID=$report" 'lUserID=[101,102,106]' 'lRightCode=[4,1,2]'
step call SrvRptRetrieve.GetRptAuthorize "lRptID=$report"

title "14. The templates of an accounting regime become ordinary reports"
step call SrvRptUpdate.ImportRpt 'sID="124"'
step sql "select FRptID, FRptName, FRptType, FOwner from t_Rpt_Content where FRptID > $report"

title "15. A leader's mark, and an analysis document"
step call RptPropItemUpdate.SetRptIsAudit "lngRptID=$report" lngUserID=101 'sUserName="陈雨"'
step call RptPropItemInfo.CheckRptIsAudit "lngRptID=$report"
step call RptPropItemUpdate.PutOutDoc 'sFileName="六月分析.txt"' 'sType="txt"' \
  "vDOC=[{\"\$bytes\":\"$(printf 'June: ' | base64)\"},{\"\$bytes\":\"$(printf 'better than May.' | base64)\"}]"
step call RptPropItemInfo.GetEISFileName
step sql "select FID, FName, FType, datalength(FBinaryImg) as FBytes from t_Rpt_EISDOC"

title "16. A quarter's statements of three companies"
for company in 001 002 003; do
  step call CsUpdate.SaveCsData lYear=2025 lPeriod=3 'dDay={"$date":"2025-09-30T00:00:00"}' lngRptGroupID=3 \
    lCurrencyID=1 "sCompanyNum=\"$company\"" "varRptContent=@$document"
done
step call --table CsRetrieve.GetExistRpt lYear=2025 lMonth=9 'dDay={"$date":"2025-09-30T00:00:00"}' lCurrencyID=1
filter="FRptGroupID=3 And FYear=2025 And FPeriod=3 And FCompanyNum='002'"
step call CsUpdate.CsDataStatusUpdate "sFilterStr=\"$filter\"" 'sFieldName="FIsChecked"' varValue=true
step call CsRetrieve.CsDataStatusInfo "sFilterStr=\"$filter\"" 'sFieldName="FIsChecked"'
step call CsUpdate.DelOneCsRpt lYear=2025 lPeriod=3 'dDay={"$date":"2025-09-30T00:00:00"}' lngRptGroupID=3 \
  lngCurrencyID=1 'sCompanyNum="003"'

title "17. Statements in the older layout are converted"
older="Database=older.db"
step init --dsn "$older" --sample=older
step call --table --dsn "$older" CsRetrieve.GetRptGroupList
step sql --dsn "$older" "insert into t_CsRptGroup values (101, N'P01', N'旧版月报', 1, 0)"
step call --dsn "$older" CsUpdate.UpGradeOneCsRpt lngOldRptGroupID=1 lngNewRptGroupID=101 lCurrencyID=1 \
  'sCurrencyNum="RMB"'
step sql --dsn "$older" "select FRptGroupID, FYear, count(*) as FStatements from t_CsRptContent group by FRptGroupID, FYear"
step call --table --dsn "$older" CsRetrieve.GetRptGroupList
step upgrade --dsn "$older"

title "18. Another account set: a configuration made, granted, and seen by the grantee; an account checked"
connection='{"FDriverType":0,"FAisName":"SW2025","FSystemDB":"sysdb","FServerName":"finance-southwest"'
step call MultiAccountUpdate.CreateAcct 'sAcctName="西南分部账套"' \
  "Properties=$connection,\"FMUserName\":\"reader\",\"FMPassword\":\"demo\",\"FPropsString\":\"\"}"
step call MultiAccountUpdate.CreateAcctRight 'Prop={"FName":"西南分部账套","FUserID":107,"FCreatorID":1}'
step call --table --dsn "$TOLVANE_DSN;UserID=107" MultiAccountInfo.GetListByUser
step call --dsn "$TOLVANE_DSN;UserID=105" MultiAccountInfo.CheckAccountRight 'sAcctName="1122.01.02"'
step call --dsn "$TOLVANE_DSN;UserID=105" MultiAccountInfo.CheckAccountRight 'sAcctName="1001"'

title "19. A batch print scheme, made and changed"
step call RptBatchPrnUpdate.Add 'sSchemeName="月初打印"' 'sAuthor="Administrator"' \
  'vect={"$list":[{"lRptID":1,"sRptName":"集团资产负债表"},{"lRptID":2,"sRptName":"集团利润表"}]}'
scheme="$(number "select max(FSchemeID) from t_Rpt_PrintScheme")"
step call RptBatchPrnUpdate.Modify "lSchemeID=$scheme" 'sSchemeName="月初打印"' \
  'vect={"$list":[{"lRptID":3,"sRptName":"集团现金流量表"},{"lRptID":1,"sRptName":"集团资产负债表"}]}'
step call --table RptBatchPrnInfo.GetDetail "FID=$scheme"

title "20. The account set is an ordinary database"
look="select FRptID, FRptName, FRptType, length(FRptData) from t_Rpt_Content where FRptID >= $((report - 3))"
show sqlite3 -box demo.db "$look"
sqlite3 -box demo.db "$look"

title "The account set stays in $folder/demo.db"
