#!/usr/bin/env bash
# register.sh 32|64 FOLDER: registers the DLLs in FOLDER with Wine, the server on the standalone components.
set -euo pipefail
wine="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/../../tools/wine_run.sh"
"$wine" "$1" regsvr32 /s "Z:$2/NorvStandalone.dll"
"$wine" "$1" regsvr32 /s /i:standalone "Z:$2/NorvTolvane.dll"
