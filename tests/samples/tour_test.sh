#!/usr/bin/env bash
# The tour goes through from beginning to end, and shows what it says.
source "$(dirname "${BASH_SOURCE[0]}")/checks.bash"
shown="$("$source_tree/samples/tour.sh" tour)"
contains "the saved report" "$shown" "六月利润月报"
contains "the document" "$shown" "no difference in"
contains "the menu" "$shown" "(用途)-对外报送"
contains "the refusal" "$shown" "The report name must not be empty"
contains "the menu as a tree" "$shown" "  |- 六月利润月报"
contains "the analysis documents" "$shown" "六月分析.txt||1"
contains "the database" "$shown" "sqlite3"
