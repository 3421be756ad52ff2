#!/usr/bin/env bash
# Every check of the sources that is not a test, one door for all of them. Goes on after a failure and says at the end
# what failed. Needs a build in build/: clang-tidy reads its compile commands, and it has the program that
# writes the reference pages.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
failed=()

# check NAME COMMAND...
check() {
  local name="$1"
  shift
  printf -- '-- %s\n' "$name"
  "$@" || failed+=("$name")
}

sources() {
  git ls-files --cached --others --exclude-standard -- "$@" | while read -r file; do
    [ ! -f "$file" ] || echo "$file"
  done
}

format() { sources '*.cpp' '*.h' | xargs -r clang-format --dry-run -Werror; }

# Where it is remembered that a file had no findings: by the file's content, the shared headers and the settings.
tidy_mark() {
  local sum
  sum="$(cat .clang-tidy "$1" $(sources 'src/platform/*.h' 'src/frame/*.h') | sha256sum | cut -c 1-16)"
  echo "build/tidy/$(echo "$1" | tr / _).$sum"
}

# The service folders and what they stand on: no foreign headers there, so that a run takes a minute, not twenty. What is
# for Windows only has headers that are not here.
tidy() {
  local file status=0 due=()
  mkdir -p build/tidy
  while read -r file; do
    [ -e "$(tidy_mark "$file")" ] || due+=("$file")
  done < <(sources 'src/platform/*.cpp' 'src/frame/*.cpp' 'src/reportstore/*.cpp' 'src/classification/*.cpp' \
    'src/csreports/*.cpp' 'src/multiaccount/*.cpp' 'src/batchprint/*.cpp' 'src/catalogue/*.cpp' | grep -v '/windows_')
  [ ${#due[@]} = 0 ] && return 0
  printf '%s\n' "${due[@]}" | xargs -P 2 -n 4 clang-tidy --quiet -p build 2> build/tidy/errors || status=1
  if [ "$status" = 0 ]; then
    for file in "${due[@]}"; do
      touch "$(tidy_mark "$file")"
    done
  else
    grep -v 'warnings generated\|Suppressed\|Use -header-filter' build/tidy/errors >&2
  fi
  return "$status"
}

reference() {
  rm -rf build/reference
  mkdir -p build/reference
  build/reference_pages build/reference && diff -r build/reference docs/reference
}

interfaces() { build/interface_library | diff - idl/NorvTolvane.idl; }

manual() { man --warnings -E UTF-8 -l man/tolvane.1 2>&1 > /dev/null | { ! grep .; }; }

scripts() {
  local file status=0
  while read -r file; do bash -n "$file" || status=1; done < <(sources '*.sh' dev .ci/run)
  return "$status"
}

check "formatting (clang-format)" format
check "clang-tidy" tidy
check "reference pages are up to date" reference
check "type library's text is up to date" interfaces
check "sample SQL is up to date" python3 -B samples/make_demo.py --check
check "sample documents are up to date" python3 -B samples/make_documents.py --check
check "words and paths" tools/check_words.sh
check "layout of the tree" python3 -B tools/check_layout.py
check "texts and their translations" python3 -B tools/check_texts.py
check "manual page" manual
check "shell scripts" scripts

if [ ${#failed[@]} != 0 ]; then
  printf 'failed: %s\n' "${failed[@]}"
  exit 1
fi
echo "all checks passed"
