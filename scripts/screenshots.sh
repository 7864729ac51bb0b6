#!/bin/sh
# Takes pictures of every window in both themes, into docs/images. Needs no display.
set -eu
cd "$(dirname "$0")/.."
preset=${PRESET:-debug}
[ -f "build/$preset/build.ninja" ] || cmake --preset "$preset"
cmake --build "build/$preset" --target glimra_screenshots
QT_QPA_PLATFORM=offscreen "build/$preset/bin/glimra_screenshots" docs/images
