#!/usr/bin/env bash
# on-x.sh PROGRAM ARGUMENTS...: runs a test program on an X server of its own, with a window manager.
set -euo pipefail
number=$(mktemp)
trap 'kill $(jobs -p) 2>/dev/null || true; rm -f "$number"' EXIT
Xvfb -displayfd 3 -screen 0 1366x768x24 -nolisten tcp 3>"$number" 2>/dev/null &
for _ in $(seq 100); do
    [ -s "$number" ] && break
    sleep 0.1
done
# Without what a desktop lends: it may or may not be there, and keeps memory for ever.
export DBUS_SESSION_BUS_ADDRESS=disabled: QT_XCB_GL_INTEGRATION=none
export DISPLAY=":$(cat "$number")" QT_QPA_PLATFORM=xcb
openbox --sm-disable 2>/dev/null &
sleep 0.5
"$@"
