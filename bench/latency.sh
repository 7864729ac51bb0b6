#!/usr/bin/env bash
# How long a light takes, as Glimra is at first and with Fast Response, in one run: latency.sh PROGRAMS [EVENTS]
#   "confirm": from a confirm frame on the screen to the LED call that answers it
#   "event":   from an event of the game to the LED call, by way of the add-on (in its stand-in for the game, 60 pictures a
#              second): health that changes in a fight
#   "storm":   the same, while abilities are used all the time
# Real programs on an X server of its own; times are CLOCK_MONOTONIC on both sides. Ends with 1 when a light was lost or a
# goal is missed; a busy machine misses them.
set -euo pipefail
bin=$(cd "$1" && pwd) count=${2:-100}
cd "$(dirname "$0")/.."
folder=$(mktemp -d)
server= glimra=
finish() {
    [ -z "$glimra" ] || kill "$glimra" || true
    [ -z "$server" ] || kill "$server" || true
    wait
    rm -rf "$folder"
}
trap finish EXIT

await() {
    for _ in $(seq 100); do
        "$@" && return
        sleep 0.1
    done
    echo "Waited in vain for: $*" >&2
    return 1
}

# The script of glimra-strip for a kind: what is answered one by one is a token or a stage of its own.
script() {
    local kind=$1 fast=$2 health=(60 40 20 90) pause=0.35
    if [ "$kind" = confirm ]; then
        local periods=(x y z w)
        printf 'send C\nwait 1000\n'
        for ((i = 0; i < count; i++)); do
            printf 'send %s\nwait %d\n' "${periods[i % 4]}" $((RANDOM % 200))
        done
        printf 'wait 1000\n'
        return
    fi
    [ "$fast" = true ] || pause=0.9
    {
        printf 'client era\npictures 60\nkept "{ fast = %s }"\nlogin; wait 9\nfight; wait 3\n' "$fast"
        for ((i = 0; i < count; i++)); do
            printf 'stage health; health %d\n' "${health[i % 4]}"
            [ "$kind" = event ] || printf 'use bar1 %d cooldown 1.9; use bar6 %d cooldown 1.9\n' $((i % 6 + 1)) $((i % 5 + 1))
            printf 'wait %s%d\n' "$pause" $((RANDOM % 1000))
        done
        echo 'wait 2'
    } >"$folder/scenario"
    lua5.1 tests/addon/play.lua strip "$folder/scenario"
}

# measure KIND FAST GOAL-MEDIAN GOAL-HIGH WHAT-IS-HIGH: one line of figures, in ms.
measure() {
    local kind=$1 fast=$2 median=$3 high=$4 share=$5
    rm -rf "$folder/settings" "$folder/trace"
    mkdir "$folder/settings"
    printf '[General]\nfastResponse=%s\n' "$fast" >"$folder/settings/glimra.ini"
    "$bin/glimra" --keyboard virtual --settings "$folder/settings/glimra.ini" --trace "$folder/trace" --display "$DISPLAY" 2>/dev/null &
    glimra=$!
    await grep -qs LogiLedInit "$folder/trace"
    script "$kind" "$fast" >"$folder/script"
    "$bin/glimra-strip" --timestamps - <"$folder/script" >"$folder/painted"
    kill "$glimra"
    wait "$glimra" || true
    glimra=
    {
        sed -nE 's/.*"token":"[wxyz]".*/&/; s/.*"stage":"health".*/&/; T; s/.*"t":([0-9.]+).*/\1 painted/p' "$folder/painted"
        sed -nE 's/^\{"t":([0-9.]+),.*"LogiLedSetTargetDevice".*/\1 lit/p' "$folder/trace"
    } | awk '$2 == "painted" { $1 = sprintf("%.6f", $1 - 0.005) } { print }' | # the call may be quicker than the note of the frame
        sort -n | awk '
            $2 == "painted" { painted[last++] = $1 + 0.005 }
            $2 == "lit" && first < last { print ($1 - painted[first++]) * 1000 }' |
        sort -n | awk -v count="$count" -v median="$median" -v high="$high" -v share="$share" -v name="$kind" -v fast="$fast" '
        { time[NR] = $1 }
        END {
            top = time[int(NR * share + 0.5)]
            isGood = NR == count && (!high || time[int((NR + 1) / 2)] < median && top < high)
            printf "%-8s %-5s %4d of %d lit; median %4.0f ms, 99th percentile %4.0f ms, longest %4.0f ms%s\n",
                name, fast == "true" ? "fast" : "slow", NR, count, time[int((NR + 1) / 2)], time[int(NR * 0.99 + 0.5)], time[NR],
                high ? "; goal " median " and " high ": " (isGood ? "met" : "missed") : ""
            exit !isGood
        }'
}

Xvfb -displayfd 3 -screen 0 1280x720x24 -noreset -nolisten tcp 3>"$folder/display" 2>/dev/null &
server=$!
await test -s "$folder/display"
DISPLAY=:$(cat "$folder/display")
export DISPLAY XDG_RUNTIME_DIR=$folder QT_QPA_PLATFORM=offscreen
good=0
measure confirm false 350 360 1 || good=1
measure confirm true 12 30 1 || good=1
measure event false 0 0 1 || good=1
measure event true 90 160 0.99 || good=1
measure storm false 0 0 1 || good=1
measure storm true 90 160 0.99 || good=1
exit $good
