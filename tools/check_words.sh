#!/usr/bin/env bash
# No file of the tree may name a folder of somebody's machine, hold unfinished work, or carry a credential.
# The patterns are written so that this file does not match itself.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
status=0

# forbid WHAT PATTERN [PATHSPEC...]
forbid() {
  local what="$1" pattern="$2"
  shift 2
  if git grep -nIP --untracked -e "$pattern" -- "${@:-.}"; then
    echo "^ $what"
    status=1
  fi
}

forbid "a path of one machine" '(?<![\w.])/(work|home|root|Users)[/]\w'
forbid "unfinished work" '\b(TO[D]O|FIX[M]E|XX[X])\b'
forbid "a reference to a document that readers do not have" '\b[P]art \d\.\d|\bthe [s]pec(ification)?\b'
forbid "a private key" 'BEGIN [A-Z ]*PRIVATE[ ]KEY'
forbid "blanks at the end of a line" '[ \t]+$' '*.cpp' '*.h' '*.sh' '*.py' '*.cmake' '*.txt' '*.sql' '*.md' dev .ci/run
forbid "a tab" '\t' '*.cpp' '*.h' '*.sh' '*.py' '*.cmake' '*.txt' '*.sql' '*.json' dev .ci/run
exit "$status"
