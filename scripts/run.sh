#!/usr/bin/env bash
# Builds Glimra and starts it with the given options. Without a display it runs the demonstration on a display
# of its own instead, and reports whether the keyboard lit as it should.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
bin=$root/build/release/bin

headless() { [ -z "${DISPLAY:-}" ]; }

build() (
    cd "$root"
    options=()
    # Do not turn tests off in an existing build folder.
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
