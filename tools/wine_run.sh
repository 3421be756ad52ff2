#!/usr/bin/env bash
# wine_run.sh 32|64 PROGRAM [ARGUMENT...]: runs a Windows program in Wine, without a screen, and passes its status on.
# PROGRAM is a file, or the name of a program that Wine brings itself:
#     tools/wine_run.sh 32 cscript //nologo script.vbs
#     tools/wine_run.sh 64 regsvr32 /s build/windows/x86_64/NorvTolvane.dll
# The sizes have a Windows folder (a "prefix") each, build/windows/wine32 and wine64. Only one program runs in a prefix at
# a time; others wait.
#
# TOLVANE_WINE_SECONDS is the time that the program may take (300). TOLVANE_WINE_PREFIX names another prefix.
# TOLVANE_WINE_DEBUG is given to WINEDEBUG, which otherwise switches Wine's own messages off.
#
# Wine for 64 bits is this machine's own; the one for 32 bits lies in a root of its own, build/windows/wine32-root, which
# tools/wine_root.sh makes. Status 77: this machine cannot run programs of that size; the reason is printed.
set -uo pipefail

usage() { echo "usage: wine_run.sh 32|64 PROGRAM [ARGUMENT...]" >&2; exit 2; }
unable() { echo "wine_run: cannot run $size-bit Windows programs here: $*" >&2; exit 77; }

[ $# -ge 2 ] || usage
size="$1"
shift
case "$size" in 32 | 64) ;; *) usage ;; esac

project="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)"
work="$project/build/windows"
root="$work/wine32-root"
mkdir -p "$work"

export WINEPREFIX="${TOLVANE_WINE_PREFIX:-$work/wine$size}"
export WINEDEBUG="${TOLVANE_WINE_DEBUG:--all}"
# Neither a browser nor .NET is asked for when the prefix is made, no menu entries are written, and no debugger takes the
# place of the status of a program that crashes.
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe,winedbg.exe=d"
unset DISPLAY WAYLAND_DISPLAY
if [ "$size" = 32 ]; then export WINEARCH=win32; else export WINEARCH=win64; fi

# What runs inside, in the right root: the program, then the end of everything that it left running.
inside='
wine="$1" server="$2" seconds="$3"
shift 3
[ -f "$WINEPREFIX/system.reg" ] || timeout --kill-after=10 300 "$wine" wineboot --init > /dev/null 2>&1
timeout --kill-after=10 "$seconds" "$wine" "$@"
status=$?
"$server" -k
"$server" -w
exit "$status"'

run=("$inside" wine_run)
seconds="${TOLVANE_WINE_SECONDS:-300}"

# Two in one prefix would end each other.
mkdir -p "$WINEPREFIX"
exec 9> "$WINEPREFIX/tolvane.lock"
flock 9

if [ "$size" = 64 ]; then
  [ -x /usr/lib/wine/wine64 ] || unable "the package wine64 is not installed"
  exec bash -c "${run[@]}" /usr/lib/wine/wine64 /usr/lib/wine/wineserver64 "$seconds" "$@"
fi

case "$PWD/" in "$project/"*) ;; *) cd "$project" ;; esac
[ -x "$root/usr/lib/wine/wine" ] || unable "there is no build/windows/wine32-root; tools/wine_root.sh makes it"
# The mounts are seen by this program and what it starts only, and end with them. Who is not root may still be allowed to
# be it within a space of his own.
space=(unshare --mount --propagation private)
[ "$(id -u)" = 0 ] || space=(unshare --user --map-root-user --mount --propagation private)
mounts='
root="$1" project="$2"
shift 2
[ -d "$root$project" ] || mkdir -p "$root$project" || exit 1
mount --rbind /proc "$root/proc" && mount --rbind /dev "$root/dev" && mount --rbind "$project" "$root$project" || exit 1
exec "$@"'
enter=("${space[@]}" bash -c "$mounts" wine_run "$root" "$project")
reason="$("${enter[@]}" true 2>&1)" || unable "build/windows/wine32-root cannot be entered: $reason"
exec "${enter[@]}" chroot "$root" /bin/bash -c 'cd "$0" || exit; exec "$@"' "$PWD" \
  bash -c "${run[@]}" /usr/lib/wine/wine /usr/lib/wine/wineserver32 "$seconds" "$@"
