#!/usr/bin/env bash
# The demonstration's account set: everything that its scripts and its list of documents promise is in it.
source "$(dirname "${BASH_SOURCE[0]}")/checks.bash"
export TOLVANE_DSN="Database=demo.db"
"$TOLVANE" init --dsn "$TOLVANE_DSN" --sample > /dev/null

expect "reports" 31 "$(column 'select count(*) from t_Rpt_Content')"
expect "reports without a document" 0 "$(column 'select count(*) from t_Rpt_Content where FRptData is null')"
expect "templates of each regime" $'3\n3\n3' \
  "$(column 'select count(*) from t_Rpt_Content where FRptType = 3 group by F1001 order by F1001')"
expect "accounts" 405 "$(column 'select count(*) from t_Account')"
expect "accounts without the account above them" 0 \
  "$(column 'select count(*) from t_Account a where FLevel > 1 and not exists (select 1 from t_Account b where b.FAccountID = a.FParentID)')"
expect "reports filed under an item that does not exist" 0 \
  "$(column 'select count(*) from t_Rpt_Content where F1002 > 0 and F1002 not in (select FPropItemID from t_Rpt_PropItem where FPropClsID = 1002)')"
expect "statements" 27 "$(column 'select count(*) from t_CsRptContent')"
expect "rights of users that do not exist" 0 \
  "$(column 'select count(*) from t_Rpt_Right where FUserID not in (select FUserID from t_User)')"

# A document is the file that the list names, byte for byte.
"$TOLVANE" call SrvRptRetrieve.GetRptViaName 'sRptName="集团资产负债表"' |
  sed -n 's/.*"vPlx": *{"$bytes": *"\([^"]*\)".*/\1/p' | base64 -d > document.xlsx
cmp document.xlsx "$source_tree/samples/documents/balance_group.xlsx" || fail "the document differs"
# That of a type-2 report is a value.
contains "a report of type 2" "$("$TOLVANE" call SrvRptRetrieve.GetRptViaName 'sRptName="财务比率"' lRptType=2)" "流动比率"

# An account set is not made over another.
if "$TOLVANE" init --dsn "$TOLVANE_DSN" > again.txt 2>&1; then fail "a second init was not refused"; fi
expect "reports after the refusal" 31 "$(column 'select count(*) from t_Rpt_Content')"
