#!/bin/sh
# Takes pictures of every window in both themes, and a film of a fight, into build/pictures, and copies those that a page shows to docs/images.
# Needs no display.
set -eu
cd "$(dirname "$0")/.."
preset=${PRESET:-debug}
[ -f "build/$preset/build.ninja" ] || cmake --preset "$preset"
cmake --build "build/$preset" --target glimra_screenshots
mkdir -p build/pictures
QT_QPA_PLATFORM=offscreen "build/$preset/bin/glimra_screenshots" build/pictures
for picture in build/pictures/*.png build/pictures/*.gif; do
    if grep -qF "images/${picture##*/}" README.md docs/*.md; then
        cp "$picture" docs/images/
    fi
done
