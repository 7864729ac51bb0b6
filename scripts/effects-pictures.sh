#!/usr/bin/env bash
# Redraws the pictures of docs/effects.md: effects-pictures.sh [GLIMRA-REPLAY [FOLDER]]
set -euo pipefail
cd "$(dirname "$0")/.."

replay=${1:-build/release/bin/glimra-replay}
folder=${2:-docs/effects}
mkdir -p "$folder"

# film NAME SECONDS TOKENS [COMMAND...]: films the keyboard while the game is in front and sends TOKENS.
film() {
    local name=$1 seconds=$2 tokens=$3
    shift 3
    {
        [ $# -eq 0 ] || printf '%s\n' "$@"
        printf 'start\nfront "com.blizzard.worldofwarcraft"\nwait 0.4\ntoken "%s"\nwait %s\n' "$tokens" "$seconds"
    } | "$replay" --only quit --film "$folder/$name.gif" -
    echo "$folder/$name.gif"
}

# Films both forms of an effect that looks different in single-colour mode.
both_forms() {
    film "$@"
    film "$1-single" "$2" "$3" 'default "singleColorMode" true'
}

both_forms sweep-gold 1.2 G
film sweep-gold-up 1.2 g
both_forms sweep-silver 1.2 S
film sweep-silver-up 1.2 s
both_forms sweep-copper 1.2 M
film sweep-copper-up 1.2 m
both_forms sweep-fire-up 1.2 a
both_forms edges-parade 3.0 A
both_forms edges-embers 2.6 F
both_forms edges-sky 2.2 n
both_forms stripes 2.2 T
both_forms wipe-sand 1.6 N
both_forms wipe-water 1.6 L
both_forms wave 1.8 h
both_forms rainbow 1.6 J
film ripple 1.0 B
film flash-red 2.0 H
film flash-green 2.0 r
film flash-white 1.4 f
film ghost-fade 1.2 W
film ghost-return 1.2 V
film death-glow 1.4 D
film shadow-teal 1.4 j
film shadow-blue 1.4 k
film shadow-green 1.4 l
film combat 1.4 C
film combat-fast 1.4 zC
film combat-chat 1.4 CE 'default "combatChatWarning" true'
film whisper 2.0 I
