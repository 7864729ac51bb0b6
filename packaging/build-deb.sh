#!/usr/bin/env bash
# Builds the Debian package and prints its name.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh build
options=()
# A build folder that has the tests keeps them.
[ -f build/release/CMakeCache.txt ] || options=(-DGLIMRA_BENCH=OFF -DGLIMRA_TESTS=OFF)
cmake --preset release "${options[@]}" >/dev/null
cmake --build --preset release --target glimra glimra-replay glimra-strip
(cd build/release && cpack --config CPackConfig.cmake >/dev/null)
ls "$PWD"/build/release/glimra_*.deb
