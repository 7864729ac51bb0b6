#!/usr/bin/env bash
# Runs clang-tidy on the sources: tidy.sh [FILE...]; without arguments, on all of src/, a dozen sources at a
# time, since most of the time is spent on headers that they share.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh build test check
preset=tidy
[ $# -eq 0 ] || preset=debug
cmake --preset "$preset" >/dev/null
# Some sources include headers that the build generates.
cmake --build --preset "$preset" --target generated_headers >/dev/null
if [ $# -gt 0 ]; then
    printf '%s\0' "$@"
else
    find build/tidy/src -path '*/Unity/unity_*.cxx' -print0
fi | xargs -0 -r -n 1 -P "$(nproc)" \
    clang-tidy -p "build/$preset" --quiet --extra-arg=-Wno-unknown-warning-option # the build's GCC has more
