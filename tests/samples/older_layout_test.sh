#!/usr/bin/env bash
# The sample of the older layout: its tables are there, and so is what there is to convert.
source "$(dirname "${BASH_SOURCE[0]}")/checks.bash"
export TOLVANE_DSN="Database=older.db"
"$TOLVANE" init --dsn "$TOLVANE_DSN" --sample=older > /dev/null

expect "groups to convert" 3 "$(column 'select count(*) from t_Rpt_CsRptGroup where FCycleID <> 10000')"
expect "statements" 43 "$(column 'select count(*) from t_Rpt_CsRptContent where FRptContent is not null')"
expect "item values" 96 "$(column 'select count(*) from t_Rpt_CsRptItemData')"
expect "values that were never given" 24 "$(column 'select count(*) from t_Rpt_CsRptItemData where FAmount is null')"
