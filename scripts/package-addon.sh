#!/usr/bin/env bash
# Packs the add-on in the form that add-on sites accept, and prints the file's name.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh build addon
options=()
# Do not turn tests off in an existing build folder.
[ -f build/release/CMakeCache.txt ] || options=(-DGLIMRA_BENCH=OFF -DGLIMRA_TESTS=OFF)
cmake --preset release "${options[@]}" >/dev/null
cmake --build --preset release --target addon >/dev/null
ls "$PWD"/build/release/glimraxmit-*.zip
