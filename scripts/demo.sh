#!/usr/bin/env bash
# The demonstration, on an X server of its own: demo.sh PROGRAMS FOLDER [OPTION...]
#
# It plays an evening in the game. A stand-in for the game runs the real add-on, glimra-strip shows what the
# add-on paints, and glimra, started with the options, lights its virtual keyboard. FOLDER gets a picture of
# each stage and the trace of the application's output. The exit status tells whether the keyboard lit as it
# should.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
bin=$1 folder=$2
shift 2
trace=$folder/trace.jsonl
mkdir -p "$folder"
mkdir -p -m 700 "$folder/runtime"
rm -f "$folder"/*.png "$trace" "$folder"/settings.ini*

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

# Saves a picture of the screen without the black area around the window.
picture() {
    xwdtopnm -quiet <"$folder/Xvfb_screen0" | pnmcrop -quiet -black | pnmtopng -quiet >"$folder/$1.png"
}

traced() { grep -qE "$1" "$trace" 2>/dev/null; }

# expect COUNT CALL ARGUMENTS WHAT: fails the demonstration unless there are at least COUNT such calls.
expect() {
    local found
    found=$(grep -cE "\"call\":\"$2\",\"args\":\[$3\]" "$trace" || true)
    [ "$found" -ge "$1" ] || fail "$4 ($found calls of $2 instead of $1)"
}

# Waits for the first half of a second of the flash, in which the Enter key is lit.
await_flash() {
    local began
    began=$(sed -nE 's/^\{"t":([0-9.]+),.*"LogiLedFlashSingleKey".*/\1/p' "$trace" | tail -n 1)
    sleep "$(awk -v began="${began:-0}" '{ since = ($1 - began) % 1; print (1.1 - since) % 1 }' /proc/uptime)"
}

frames() { grep -c LogiLedSetLightingFromBitmap "$trace" || true; }

# Waits until an animation has shown some frames more than the given number.
await_animation() {
    local before=$1
    for _ in $(seq 100); do
        [ "$(frames)" -lt $((before + 6)) ] || return 0
        sleep 0.02
    done
}

Xvfb -displayfd 3 -screen 0 1280x720x24 -fbdir "$folder" -noreset -nolisten tcp 3>"$folder/display" 2>/dev/null &
background+=($!)
await test -s "$folder/display" || fail "Xvfb did not start."
DISPLAY=:$(cat "$folder/display")
export DISPLAY
unset WAYLAND_DISPLAY
export QT_QPA_PLATFORM=xcb XDG_RUNTIME_DIR=$folder/runtime

# Places the window below the strip, and lets the first profile show cooldowns.
printf '%s\n' 'frame.windowPosition=[150 40 980 640]' 'useActionBarCooldowns1=true' >"$folder/settings.ini"
"$bin/glimra" --keyboard virtual --settings "$folder/settings.ini" --trace "$trace" --log "$@" &
glimra=$!
background+=("$glimra")
runs() { kill -0 "$glimra" 2>/dev/null; }
started() { traced '"LogiLedInit"' || ! runs; }
await started || fail "glimra did not start."
if ! runs; then
    # glimra printed some information only, or could not start and has said why.
    wait "$glimra" && exit
    exit $?
fi

lua5.1 "$root/tests/addon/play.lua" strip "$root/tests/addon/scenarios/demonstration.scenario" >"$folder/strip.txt" || fail "the add-on could not be played."
timeout 60 "$bin/glimra-strip" - <"$folder/strip.txt" | while read -r _ stage; do
    echo "Stage: $stage"
    case $stage in
        whisper) await_flash ;;
        rainbow) await_animation "$(frames)" ;;
    esac
    picture "$stage" || exit
done || fail "the strip or the pictures could not be made."

kill "$glimra"
wait "$glimra" || fail "glimra did not quit in the orderly way."

expect 2 LogiLedSetLightingFromBitmap '"[0-9a-f]{1008}"' "the profile did not come on"
expect 18 LogiLedPulseSingleKey '[0-9]+,100,0,0,25,0,0,400,true' "the fight did not pulse red"
expect 18 LogiLedPulseSingleKey '[0-9]+,100,0,0,25,0,0,100,true' "low health did not make the pulse race"
for key in 2 3 4 8 9 10; do
    expect 1 LogiLedSetLightingForKeyWithKeyName "$key,30,0,0" "an ability on cooldown did not darken its key"
done
for key in 3 4; do
    expect 1 LogiLedFlashSingleKey "$key,100,100,100,1000,75" "an ability that was ready again did not blink"
done
expect 27 LogiLedPulseSingleKey '[0-9]+,50,40,50,[0-9]+,[0-9]+,[0-9]+,[0-9]+,true' "death did not glow"
expect 45 LogiLedStopEffectsOnKey '[0-9]+' "the end of the fight and of death did not stop the effects"
expect 1 LogiLedSetLightingForKeyWithKeyName '1,50,100,50' "the ghost's Esc did not light"
expect 1 LogiLedFlashSingleKey '28,100,0,100,0,500' "the whisper did not flash Enter"
# The end of the fight also stops the effect on Enter.
expect 2 LogiLedStopEffectsOnKey '28' "the next message did not end the flash"
# Seven frames when the ghost leaves, seven when it returns, twelve of the rainbow, and the profile at the
# login.
[ "$(frames)" -ge 27 ] || fail "the animations did not play to their end ($(frames) frames)."
for stage in combat cooldown dead ghost whisper rainbow; do
    ! cmp -s "$folder/rest.png" "$folder/$stage.png" || fail "the keyboard looks the same at rest and in stage $stage."
done
echo "The keyboard lit as it should. Pictures and trace are in $folder."
