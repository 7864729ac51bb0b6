#!/usr/bin/env bash
# Runs clang-tidy on the sources: tidy.sh [FILE...]; without arguments, on all of src/.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh build test check
cmake --preset debug >/dev/null
# Some sources include headers that the build generates.
cmake --build --preset debug --target generated_headers >/dev/null
if [ $# -gt 0 ]; then
    printf '%s\0' "$@"
else
    git ls-files -z -- 'src/*.cpp'
fi | xargs -0 -r -n 4 -P "$(nproc)" \
    clang-tidy -p build/debug --quiet --extra-arg=-Wno-unknown-warning-option # the build's GCC has more
