#!/usr/bin/env bash
# accessibility_test.sh PROGRAM: walks the windows as a screen reader does, on a display and a bus of its own.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export HOME=$home XDG_CONFIG_HOME=$home XDG_DATA_HOME=$home XDG_RUNTIME_DIR=$home
export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 QT_QPA_PLATFORM=xcb
xvfb-run -a -s "-screen 0 1366x768x24 -noreset -nolisten tcp" dbus-run-session -- /usr/bin/python3 "$here/accessibility_walk.py" "$1"
