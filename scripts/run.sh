#!/usr/bin/env bash
# Builds Glimra and starts it with the options given. Where there is no display it plays the demonstration on a
# display of its own instead, and tells whether the keyboard lit as it should.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
bin=$root/build/release/bin

headless() { [ -z "${DISPLAY:-}" ]; }

build() (
    cd "$root"
    options=()
    # A build folder that has the tests keeps them.
    [ -f build/release/CMakeCache.txt ] || options=(-DGLIMRA_BENCH=OFF -DGLIMRA_TESTS=OFF)
    cmake --preset release "${options[@]}" >/dev/null
    cmake --build --preset release --target glimra glimra-strip
)

lists=(build)
headless && lists+=(demo)
"$root/scripts/install-deps.sh" "${lists[@]}"
build
headless || exec "$bin/glimra" "$@"
exec "$root/scripts/demo.sh" "$bin" "$root/build/demo" "$@"
