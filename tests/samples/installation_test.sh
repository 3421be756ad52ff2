#!/usr/bin/env bash
# An installed program finds its schema, resources and samples where they were installed, from any folder.
source "$(dirname "${BASH_SOURCE[0]}")/checks.bash"
"${CMAKE:-cmake}" --install "$TOLVANE_BUILD" --prefix "$folder/usr" > /dev/null
[ -e usr/share/man/man1/tolvane.1 ] || fail "the manual page was not installed"
mkdir elsewhere
cd elsewhere
TOLVANE="$folder/usr/bin/tolvane"
export TOLVANE_DSN="Database=demo.db"
"$TOLVANE" init --dsn "$TOLVANE_DSN" --sample > /dev/null
expect "reports" 31 "$(column 'select count(*) from t_Rpt_Content')"
contains "an error in English" \
  "$("$TOLVANE" call --dsn "$TOLVANE_DSN;Language=en" SrvRptUpdate.SavePlxToSrv 'sSysName=""' 'sRptName=" "' 'vPlx=""' lOwner=1 || true)" \
  "The report name must not be empty"
