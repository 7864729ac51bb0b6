#!/bin/bash
# How much memory the program holds, in MB: with its window shown, after a minute at rest in it, and after the painter
# was opened and closed; and without a window. Its own pages, and its share of those that it shares with others (PSS).
#
# usage: bench/memory.sh GLIMRA...
set -eu
folder=$(mktemp -d)
cleanup() {
    # shellcheck disable=SC2046
    kill $(jobs -p) 2>/dev/null || true
    wait 2>/dev/null || true
    rm -rf "$folder"
}
trap cleanup EXIT
Xvfb -displayfd 3 -screen 0 1920x1080x24 3>"$folder/display" >/dev/null 2>&1 &
while [ ! -s "$folder/display" ]; do sleep 0.1; done
DISPLAY=:$(cat "$folder/display")
export DISPLAY QT_SCALE_FACTOR=1
unset DBUS_SESSION_BUS_ADDRESS
openbox >/dev/null 2>&1 &
sleep 1
tell() {
    awk -v name="$1" '/^Pss:/ { all = $2 } /^Pss_Anon:/ { own = $2 }
        END { printf "  %-24s %5.1f own, %5.1f in all\n", name, own / 1024, all / 1024 }' "/proc/$program/smaps_rollup"
}
for glimra in "$@"; do
    echo "$glimra"
    home=$(mktemp -d "$folder/home.XXXX")
    env HOME="$home" XDG_CONFIG_HOME="$home" XDG_RUNTIME_DIR="$home" "$glimra" --keyboard virtual >/dev/null 2>&1 &
    program=$!
    window=$(timeout 20 xdotool search --sync --onlyvisible --name '^Glimra$' | head -n 1)
    sleep 2
    tell "window shown"
    sleep 60
    tell "a minute later"
    xdotool windowactivate --sync "$window" key ctrl+e
    painter=$(timeout 20 xdotool search --sync --onlyvisible --name 'Color' | head -n 1)
    sleep 2
    tell "painter open"
    xdotool windowactivate --sync "$painter" key alt+F4
    sleep 2
    tell "painter closed"
    kill "$program"
    wait "$program" || true
    env HOME="$home" XDG_CONFIG_HOME="$home" XDG_RUNTIME_DIR="$home" "$glimra" --keyboard virtual --no-window \
        >/dev/null 2>&1 &
    program=$!
    sleep 4
    tell "without a window"
    kill "$program"
    wait "$program" || true
done
