#!/usr/bin/env bash
# How long from the painting of a confirm frame to the LED call that answers it: latency.sh PROGRAMS [TOKENS]
# Runs the application and the strip painter on an X server of its own; times are CLOCK_MONOTONIC on both sides.
# The bound is what the timers allow: 50 ms until the next capture, 100 ms until the message is taken from the
# queue, 200 ms until it is dispatched.
set -euo pipefail
bin=$1 count=${2:-200}
folder=$(mktemp -d)
background=()
finish() {
    for process in "${background[@]}"; do
        kill "$process" 2>/dev/null || true
    done
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

Xvfb -displayfd 3 -screen 0 1280x720x24 -noreset -nolisten tcp 3>"$folder/display" 2>/dev/null &
background+=($!)
await test -s "$folder/display"
DISPLAY=:$(cat "$folder/display")
export DISPLAY XDG_RUNTIME_DIR=$folder QT_QPA_PLATFORM=offscreen
"$bin/glimra" --keyboard virtual --settings "$folder/settings.ini" --trace "$folder/trace" --display "$DISPLAY" &
background+=($!)
await grep -qs LogiLedInit "$folder/trace"

# Each of these changes the period of the combat pulse, and is never held back.
periods=(x y z w)
{
    echo "send C"
    echo "wait 1000"
    for ((i = 0; i < count; i++)); do
        echo "send ${periods[i % 4]}"
        echo "wait $((RANDOM % 200))"
    done
    echo "wait 1000"
} | "$bin/glimra-strip" --timestamps - >"$folder/painted"

sed -nE 's/.*"t":([0-9.]+),"token":"[wxyz]".*/painted \1/p' "$folder/painted" >"$folder/events"
sed -nE 's/^\{"t":([0-9.]+),.*"LogiLedSetTargetDevice".*/lit \1/p' "$folder/trace" >>"$folder/events"
sort -k2,2n "$folder/events" |
    awk '$1 == "painted" { painted[last++] = $2 } $1 == "lit" && first < last { print ($2 - painted[first++]) * 1000 }' |
    sort -n >"$folder/times"
answered=$(wc -l <"$folder/times")
awk -v count="$count" '{ time[NR] = $1 } END {
    printf "%d of %d tokens answered; median %.0f ms, 99th percentile %.0f ms, longest %.0f ms (bound 350 ms)\n",
        NR, count, time[int((NR + 1) / 2)], time[int(NR * 0.99 + 0.5)], time[NR] }' "$folder/times"
[ "$answered" -eq "$count" ]
