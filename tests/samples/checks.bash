# Words for the shell tests of this folder. A script sources this, then makes its checks; it ends at the first that fails.
# TOLVANE is the program. Every script has a folder of its own, which is gone at the end.
set -euo pipefail
export LC_ALL=C.UTF-8
source_tree="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
folder="$(mktemp -d)"
trap 'rm -rf "$folder"' EXIT
cd "$folder"

fail() { printf '%s: %s\n' "$0" "$*" >&2; exit 1; }

# expect WHAT WANTED GOT
expect() { [ "$2" = "$3" ] || fail "$1: wanted <$2>, got <$3>"; }

# contains WHAT TEXT PART
contains() { [[ "$2" == *"$3"* ]] || fail "$1: <$3> is missing in: $2"; }

# The first column of a query's rows, one a line.
column() {
  "$TOLVANE" sql --json "$1" | tr -d '\n ' | sed -n 's/.*"rows":\[\(.*\)\].*/\1/p' | sed 's/^\[//; s/\]$//; s/\],\[/\n/g'
}
