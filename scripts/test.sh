#!/usr/bin/env bash
# Builds and runs all tests: as released, then under the address, undefined-behaviour and thread sanitizers.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh build test
for preset in release asan tsan; do
    echo "== $preset"
    cmake --preset "$preset" -DGLIMRA_TESTS=ON
    cmake --build --preset "$preset"
    ctest --preset "$preset"
done
