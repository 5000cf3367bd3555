#!/usr/bin/env bash
# Runs a Windows program under Wine in a throwaway prefix kept beside the build.
# The prefix is made once per build tree; a lock keeps parallel tests from racing on it.
set -euo pipefail
wine=/usr/lib/wine/wine64
[ -x "$wine" ] || wine=$(command -v wine64 || command -v wine)
# usage: wine-run.sh PREFIX PROGRAM [ARGS...]
export WINEPREFIX=$1
shift
export WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree,mshtml=}
export WINEARCH=win64
mkdir -p "$(dirname "$WINEPREFIX")"
(
    flock 9
    if [ ! -f "$WINEPREFIX/.kel-ready" ]; then
        rm -rf "$WINEPREFIX"
        "$wine" wineboot -i >/dev/null 2>&1 || true
        wineserver=$(dirname "$wine")/wineserver
        "$wineserver" -w 2>/dev/null || true
        touch "$WINEPREFIX/.kel-ready"
    fi
) 9>"$WINEPREFIX.lock"
exec "$wine" "$@"
