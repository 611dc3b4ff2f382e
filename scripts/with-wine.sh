#!/usr/bin/env bash
# Runs a command with a private Wine prefix inside the build folder, one wineserver kept alive for
# the whole command, and a virtual X display when none is set.
# Usage: scripts/with-wine.sh BUILD_DIR command [args...]
# Under Wine 8 GetProcessHandleCount answers 0 and GetGuiResources answers 0: the tests count
# kernel handles and GDI objects by probing handle values (tests/common/kvtest.cpp).
set -euo pipefail
build=$(cd "$1" && pwd)
shift

export WINEPREFIX="$build/wineprefix"
export WINEDEBUG=-all
# winedbg disabled: a crashing test must end with an error, not wait in a debugger.
export WINEDLLOVERRIDES="mscoree,mshtml=;winedbg.exe=d"

if [ -z "${DISPLAY:-}" ]; then
    # 24-bit colour so that pixel tests read back exactly what was drawn.
    exec xvfb-run -a -s "-screen 0 1280x1024x24" "$0" "$build" "$@"
fi

if [ ! -f "$WINEPREFIX/system.reg" ]; then
    echo "with-wine: creating the Wine prefix (once per build folder)" >&2
    wineboot -i >/dev/null 2>&1 || true
    # Unmanaged windows: without a window manager, hiding a managed window waits two seconds
    # for a state change that never comes.
    wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null 2>&1 || true
    wineserver -w
fi

# A server left from an earlier run (perhaps on another, now dead display) is ended first, and
# waited for: a dying server that the next run still connects to takes the services it started
# with it, and the first test process then starts them again, holding CTest's output pipe.
wineserver -k 2>/dev/null || true
wineserver -w 2>/dev/null || true
wineserver -p
trap 'wineserver -k 2>/dev/null || true; wineserver -w 2>/dev/null || true' EXIT
# Start Wine's background services now, with no terminal or pipe of ours: services started by a
# test process would inherit its output pipe and keep CTest waiting for it to close.
wine cmd.exe /c exit </dev/null >/dev/null 2>&1 || true
"$@"
