#!/usr/bin/env bash
# wine_root.sh: makes build/windows/wine32-root, a small Debian of i386 packages with Wine in it, for tools/wine_run.sh.
# What is there already is kept. Takes about a minute and a half and 1 GB; it needs root.
#
# Wine for 32 bits could be installed beside the one for 64 bits by making i386 a second architecture of this machine. That
# changes the machine for good, and fails while the package mirror is between two states; this does neither.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
project="$(pwd -P)"
root="$project/build/windows/wine32-root"
log="$project/build/windows/wine32-root.log"

unable() { echo "wine_root: $*" >&2; exit 77; }

[ ! -x "$root/usr/lib/wine/wine" ] || exit 0
[ "$(id -u)" = 0 ] || unable "a root of i386 packages can be made by root only"
command -v debootstrap > /dev/null || unable "the package debootstrap is not installed"

# The same release, from where this machine's own packages come from.
release="$(. /etc/os-release && echo "${VERSION_CODENAME:-}")"
mirror="$(apt-get indextargets --format '$(RELEASE) $(REPO_URI)' 'Created-By: Packages' |
  sed -n "s/^$release //p" | head -n 1)"
[ -n "$mirror" ] || unable "this machine names no package source for $release"

rm -rf "$root" "$root.new"
mkdir -p "$root.new"
if ! debootstrap --arch=i386 --variant=minbase --include=wine32,wine "$release" "$root.new" "$mirror" > "$log" 2>&1; then
  tail -n 3 "$log" >&2
  unable "debootstrap failed; build/windows/wine32-root.log has it all"
fi
rm -rf "$root.new"/var/cache/apt/archives/*.deb "$root.new"/usr/share/doc "$root.new"/usr/share/man
# Where tools/wine_run.sh shows the project: at its own place.
mkdir -p "$root.new$project"
mv "$root.new" "$root"
