#!/usr/bin/env bash
# zip_test.sh 32|64 ZIP: what is unpacked from the zip registers, can be tried, and goes away again.
# In a Windows of its own, so that the other tests keep what they registered.
set -uo pipefail
size="$1"
case "$size" in 32) place=x86 ;; *) place=x64 ;; esac
project="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd -P)"
export TOLVANE_WINE_PREFIX="$project/build/windows/wine$size-zip"
[ -f "$2" ] || { echo "there is no $(basename "$2"): ./dev windows makes it"; exit 77; }
folder="$project/build/windows/unpacked$size"
rm -rf "$folder"
mkdir -p "$folder"
unzip -q "$2" -d "$folder" || exit 1
cd "$folder"/* || exit 1

status=0
# step WHAT COMMAND...
step() {
  local what="$1" given
  shift
  output="$("$project/tools/wine_run.sh" "$size" "$@" 2>&1)"
  given=$?
  if [ "$given" = 77 ]; then
    echo "$output"
    exit 77
  fi
  [ "$given" = 0 ] && return
  printf '%s: status %s\n%s\n' "$what" "$given" "$output"
  status=1
}
# classes: how many of the twelve are registered.
classes() {
  grep -c '^\[Software.*\\\\NorvTolvane\.[A-Za-z]*\]' "$TOLVANE_WINE_PREFIX/system.reg"
}
expect() {
  [ "$2" = "$3" ] && return
  echo "$1: $2 where $3 was expected"
  status=1
}

step "register-standalone.cmd" cmd /c "$place\\register-standalone.cmd" /s
expect "classes that are registered" "$(classes)" 12
step "try.cmd" cmd /c "$place\\try.cmd" try.db
case "$output" in
  *"saved a report"*"the newest:"*"all went well"*) ;;
  *)
    printf 'try.cmd said:\n%s\n' "$output"
    status=1
    ;;
esac
step "register.cmd" cmd /c "$place\\register.cmd" /s
expect "keys of the components after register.cmd" "$(grep -c 'NorvTolvane.*Binding\]' "$TOLVANE_WINE_PREFIX/system.reg")" 0
step "unregister.cmd" cmd /c "$place\\unregister.cmd" /s
expect "classes that are left" "$(classes)" 0
exit "$status"
