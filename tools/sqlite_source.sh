#!/usr/bin/env bash
# sqlite_source.sh FOLDER: puts sqlite3.c and sqlite3.h there, made of the distribution's source package, for builds for
# machines that the distribution has no SQLite library for. What is there already is kept.
# The package comes from where this machine's own packages come from, with package lists kept in FOLDER: nothing of the
# machine's set-up is changed, and no rights are needed.
set -euo pipefail

[ $# = 1 ] || { echo "usage: sqlite_source.sh FOLDER" >&2; exit 2; }
mkdir -p "$1"
folder="$(cd "$1" && pwd)"
[ ! -f "$folder/sqlite3.c" ] || exit 0

state="$folder/apt"
rm -rf "$state" "$folder/package"
mkdir -p "$state/sources" "$state/lists/partial" "$state/archives/partial" "$folder/package/made"

# The machine's own list of places, asked for sources in the place of binaries.
for list in /etc/apt/sources.list /etc/apt/sources.list.d/*.list /etc/apt/sources.list.d/*.sources; do
  [ ! -f "$list" ] || sed 's/^Types:.*/Types: deb-src/; /^deb-src /d; s/^deb /deb-src /' "$list" \
    > "$state/sources/$(basename "$list")"
done
own=(-q -o Dir::Etc::sourcelist=- -o "Dir::Etc::sourceparts=$state/sources" -o "Dir::State::lists=$state/lists"
  -o "Dir::Cache=$state" -o APT::Sandbox::User= -o Acquire::Languages=none)
# A place without sources fails the update; whether the package was found shows in the next step.
apt-get "${own[@]}" update >&2 || true
(cd "$folder/package" && apt-get "${own[@]}" source sqlite3 >&2)

# The amalgamation is made by SQLite's own build, with this machine's compiler and Tcl.
cd "$folder/package/made"
../sqlite3-*/configure --disable-tcl --disable-readline --quiet >&2
make -s sqlite3.c >&2
cp sqlite3.h "$folder/"
mv sqlite3.c "$folder/"
cd "$folder"
rm -rf package apt
