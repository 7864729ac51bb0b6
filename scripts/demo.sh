#!/usr/bin/env bash
# The demonstration, on an X server of its own: demo.sh PROGRAMS FOLDER [OPTION...]
# The strip painter plays a fight, a death and a whisper at the top of the screen; glimra, started with the
# options, lights its virtual keyboard. FOLDER gets a picture of each stage and the trace of all that left the
# application; the exit status tells whether the keyboard lit as it should.
set -euo pipefail
bin=$1 folder=$2
shift 2
trace=$folder/trace.jsonl
mkdir -p "$folder"
rm -f "$folder"/*.png "$trace" "$folder/settings.ini"

background=()
finish() {
    for process in "${background[@]}"; do
        kill "$process" 2>/dev/null || true
    done
    wait
    rm -f "$folder"/Xvfb_screen0 "$folder"/display
}
trap finish EXIT

fail() {
    echo "The demonstration failed: $1" >&2
    exit 1
}

# Waits up to ten seconds until a command succeeds.
await() {
    for _ in $(seq 100); do
        "$@" && return
        sleep 0.1
    done
    return 1
}

# The screen's picture without the dark around the window.
picture() {
    xwdtopnm -quiet <"$folder/Xvfb_screen0" | pnmcrop -quiet -black | pnmtopng -quiet >"$folder/$1.png"
}

traced() { grep -qE "$1" "$trace" 2>/dev/null; }

# expect COUNT CALL ARGUMENTS WHAT: at least so many calls with such arguments, or the demonstration failed.
expect() {
    local found
    found=$(grep -cE "\"call\":\"$2\",\"args\":\[$3\]" "$trace" || true)
    [ "$found" -ge "$1" ] || fail "$4 ($found calls of $2 instead of $1)"
}

# The Enter key is lit in the first half of each second after its flash began.
await_flash() {
    local began
    began=$(sed -nE 's/^\{"t":([0-9.]+),.*"LogiLedFlashSingleKey".*/\1/p' "$trace" | tail -n 1)
    sleep "$(awk -v began="${began:-0}" '{ since = ($1 - began) % 1; print (1.1 - since) % 1 }' /proc/uptime)"
}

Xvfb -displayfd 3 -screen 0 1280x720x24 -fbdir "$folder" -noreset -nolisten tcp 3>"$folder/display" 2>/dev/null &
background+=($!)
await test -s "$folder/display" || fail "Xvfb did not start."
DISPLAY=:$(cat "$folder/display")
export DISPLAY
unset WAYLAND_DISPLAY

QT_QPA_PLATFORM=xcb "$bin/glimra" --keyboard virtual --settings "$folder/settings.ini" --trace "$trace" --log "$@" &
glimra=$!
background+=("$glimra")
await traced '"LogiLedInit"' || fail "glimra did not start."

timeout 20 "$bin/glimra-strip" demo | while read -r _ stage; do
    [ "$stage" = whisper ] && await_flash
    picture "$stage"
done

kill "$glimra"
wait "$glimra" || fail "glimra did not quit in the orderly way."

expect 36 LogiLedPulseSingleKey '[0-9]+,100,0,0,25,0,0,400,true' "the fight did not pulse red"
expect 18 LogiLedPulseSingleKey '[0-9]+,100,0,0,25,0,0,300,true' "the pulse did not become faster"
expect 27 LogiLedPulseSingleKey '[0-9]+,50,40,50,[0-9]+,[0-9]+,[0-9]+,[0-9]+,true' "death did not glow"
expect 45 LogiLedStopEffectsOnKey '[0-9]+' "the end of the fight and of death did not stop the effects"
expect 1 LogiLedFlashSingleKey '28,100,0,100,0,500' "the whisper did not flash Enter"
expect 1 LogiLedStopEffectsOnKey '28' "the next message did not end the flash"
for pair in "rest combat" "rest dead" "rest whisper"; do
    read -r before after <<<"$pair"
    ! cmp -s "$folder/$before.png" "$folder/$after.png" || fail "the keyboard looked the same in $before and $after."
done
echo "The keyboard lit as it should. Pictures and trace are in $folder."
