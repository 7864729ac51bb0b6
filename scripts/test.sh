#!/usr/bin/env bash
# Builds and runs all tests: as released, then under the address, undefined-behaviour and thread sanitizers.
# One that fails keeps none of the others from running; the exit status tells of all of them.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh build test
failed=()
for preset in release asan tsan; do
    echo "== $preset"
    cmake --preset "$preset" -DGLIMRA_TESTS=ON && cmake --build --preset "$preset" && ctest --preset "$preset" ||
        failed+=("$preset")
done
echo "== failed: ${failed[*]:-none}"
[ ${#failed[@]} -eq 0 ]
