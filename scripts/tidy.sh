#!/usr/bin/env bash
# Runs clang-tidy over the sources: tidy.sh [FILE...], all of src/ when none is named.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh build test check
cmake --preset debug >/dev/null
# Some sources include headers that the build makes.
cmake --build --preset debug --target generated_headers >/dev/null
if [ $# -gt 0 ]; then
    printf '%s\0' "$@"
else
    git ls-files -z -- 'src/*.cpp'
fi | xargs -0 -r -n 4 -P "$(nproc)" \
    clang-tidy -p build/debug --quiet --extra-arg=-Wno-unknown-warning-option # the build's GCC has more
