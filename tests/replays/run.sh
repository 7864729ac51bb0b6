#!/bin/sh
# run.sh REPLAY [--update]: runs the scripts of this folder, each with the options in its first line, and compares what
# comes out with the file beside it; --update writes those files instead. There, a long line ends in a sum, and what
# comes in great numbers stands as a number and a sum: LED calls of one kind at one moment (all that follow one another,
# where the first line ends in "# brief"), the looks and the beeps of a calibration. Files that a script has exported stand as their sums.
folder=$(cd "$(dirname "$0")" && pwd) && work=$(mktemp -d) && cd "$work" || exit 2
trap 'rm -rf "$work"' EXIT

shortened='
BEGIN { for (i = 1; i < 256; ++i) code[sprintf("%c", i)] = i }
function sum(text,    i, value) {
    for (i = 1; i <= length(text); ++i) value = (value * 31 + code[substr(text, i, 1)]) % 2147483647
    return value
}
function flush() {
    if (count > 4) print kind " " count " times, sum " sum(lines)
    else printf "%s", lines
    count = 0
    lines = ""
}
/"text":"Glimra version / { next }
{
    now = substr($0, 1, match($0, /,"args"/) ? RSTART - 1 : length($0))
    if (brief && match($0, /"led"/) || match($0, /"CAL loop: |"sound"/)) now = substr($0, RSTART, RLENGTH)
    if (now != kind) flush()
    kind = now
    lines = lines (length($0) > 600 ? substr($0, 1, 80) " ... sum " sum($0) : $0) "\n"
    ++count
}
END { flush() }'

status=0
for script in "$folder"/*.replay; do
    expected=${script%.replay}.expected
    # The options are words.
    # shellcheck disable=SC2046
    actual=$("$1" $(sed -n '1{s/^# //;s/ # brief//;p}' "$script") "$script" |
        awk -v brief="$(sed -n '1s/.* # brief/1/p' "$script")" "$shortened"
        find . -type f -exec cksum {} \; -delete)
    if [ "${2:-}" = --update ]; then
        printf '%s\n' "$actual" >"$expected"
    elif ! printf '%s\n' "$actual" | diff "$expected" -; then
        echo "FAILED: $script" >&2
        status=1
    fi
done
exit $status
