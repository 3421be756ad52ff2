#!/usr/bin/env bash
# windows_zip.sh: puts what the two Windows builds have made, and what belongs to it, into
# dist/NorvTolvane-VERSION-windows.zip.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

version="$(sed -n 's/^  VERSION \([0-9.]*\)$/\1/p' CMakeLists.txt | head -n 1)"
name="NorvTolvane-$version-windows"
stage="build/windows/package/$name"
rm -rf build/windows/package
mkdir -p "$stage" dist

# Windows' own editors want both characters at the end of a line.
text() { sed 's/\r*$/\r/' "$1" > "$2"; }

# put MACHINE FOLDER: the DLLs of a word size and their scripts.
put() {
  local machine="$1" folder="$stage/$2" file
  mkdir -p "$folder"
  for file in NorvTolvane.dll NorvStandalone.dll; do
    "$machine-w64-mingw32-strip" -o "$folder/$file" "build/windows/$machine/$file"
  done
  for file in register register-standalone unregister try; do
    text "windows/$file.cmd" "$folder/$file.cmd"
  done
  text "windows/regsvr32-$2.cmd" "$folder/regsvr32.cmd"
  text "windows/script-$2.cmd" "$folder/script.cmd"
}

put i686 x86
put x86_64 x64
cp build/windows/i686/src/com/NorvTolvane.tlb "$stage/"
text windows/README.txt "$stage/README.txt"
text docs/windows.md "$stage/windows.md"
mkdir -p "$stage/schema" "$stage/resources" "$stage/samples"
cp schema/*.sql "$stage/schema/"
cp resources/*.json "$stage/resources/"
cp -r samples/demo.sql samples/older.sql samples/documents.json samples/documents "$stage/samples/"
text windows/try.vbs "$stage/samples/try.vbs"

rm -f "dist/$name.zip"
(cd build/windows/package && zip -q -r -X "../../../dist/$name.zip" "$name")
echo "dist/$name.zip"
