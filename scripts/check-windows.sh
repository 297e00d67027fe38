#!/usr/bin/env bash
# Runs the tests of the Windows build under Wine, in a Windows of its own below build/.
#
# The services of that Windows are started first, with their output closed: started by a test they would inherit its
# output, and whoever reads it would wait for them.
set -euo pipefail
cd "$(dirname "$0")/.."

export WINEPREFIX=$PWD/build/wineprefix
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml="
unset DISPLAY WAYLAND_DISPLAY
if [ -z "${XDG_RUNTIME_DIR:-}" ] || [ ! -w "${XDG_RUNTIME_DIR:-/}" ]; then
    export XDG_RUNTIME_DIR=$PWD/build
fi

fail()
{
    echo "check-windows: $*" >&2
    exit 1
}

stop_services()
{
    timeout 30 wineserver -k </dev/null >/dev/null 2>&1 || true
}
trap stop_services EXIT

if [ ! -e "$WINEPREFIX/.ready" ]; then
    echo "check-windows: making a Windows in build/wineprefix"
    stop_services
    rm -rf "$WINEPREFIX"
    mkdir -p "$WINEPREFIX"
    wineserver -p </dev/null >/dev/null 2>&1
    timeout 300 wine wineboot --init </dev/null >/dev/null 2>&1 || fail "wineboot fails"
    timeout 60 wine winecfg -v win10 </dev/null >/dev/null 2>&1 || fail "winecfg fails"
    touch "$WINEPREFIX/.ready"
else
    wineserver -p </dev/null >/dev/null 2>&1 || true # one may run already
fi
timeout 120 wine cmd /c exit </dev/null >/dev/null 2>&1 || fail "Wine does not start a program"

scripts/run-tests.sh build/windows "$@" </dev/null
