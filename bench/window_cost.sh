#!/bin/bash
# What the shown window costs: the share of a core that each program takes at rest, in a fight, when only the logo and
# the G keys pulse, and in a fight while minimized, behind another window, and seen again, on a screen without a GPU,
# 1920 x 1080. Seen again has to cost what a fight costs: else nothing pulsed behind the other window either.
#
# Two runs on two busy cores, in percent: a keyboard drawn anew for each color took 36 to 47 in a fight, 10 to 11 for
# the logo and the G keys, 41 to 61 behind another window; from cached light it is 3.6 to 3.7, 1.7 to 1.8, and 0.5 to
# 0.7, where rest is 0.4.
#
# usage: bench/window_cost.sh GLIMRA_STRIP GLIMRA...
set -eu
strip=$1
shift
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
ticks() { awk '{ print $14 + $15 }' "/proc/$program/stat"; }
share() {
    before=$(ticks)
    sleep 12
    awk -v ticks=$(($(ticks) - before)) -v name="$1" -v hz="$(getconf CLK_TCK)" \
        'BEGIN { printf "  %-24s %5.2f %%\n", name, 100 * ticks / hz / 12 }'
}
for glimra in "$@"; do
    echo "$glimra"
    home=$(mktemp -d "$folder/home.XXXX")
    env HOME="$home" XDG_CONFIG_HOME="$home" XDG_RUNTIME_DIR="$home" "$glimra" --keyboard virtual >/dev/null 2>&1 &
    program=$!
    window=$(timeout 20 xdotool search --sync --onlyvisible --name '^Glimra$' | head -n 1)
    xdotool windowsize "$window" 1900 1000 windowmove "$window" 0 0
    sleep 2
    share "at rest"
    "$strip" send C >/dev/null
    share "in a fight"
    "$strip" send R >/dev/null
    share "logo and G keys pulse"
    # Effects end half a minute after the last frame, so each fight is measured within that time.
    "$strip" send C >/dev/null
    xdotool windowminimize "$window"
    share "minimized"
    xdotool windowmap "$window"
    "$strip" send C >/dev/null
    "$strip" --window Cover frame 000000 000000 000000 000000 000000 000000 000000 000000 000000 000000 000000 &
    cover=$!
    above=$(timeout 20 xdotool search --sync --onlyvisible --class '^Cover$' | head -n 1)
    xdotool windowsize "$above" 1920 1060 windowmove "$above" 0 0 windowraise "$above"
    sleep 2
    share "behind another window"
    kill "$cover"
    wait "$cover" 2>/dev/null || true
    share "seen again"
    kill "$program"
    wait "$program" 2>/dev/null || true
done
