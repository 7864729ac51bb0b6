#!/usr/bin/env bash
# Runs all checks and all tests: format, layers, the core alone with neither Qt nor X (its replay scripts; the
# rest of its tests run in the next stages), everything as a release build by GCC, everything by Clang under the
# address and undefined-behavior sanitizers, what has threads under the thread sanitizer, and clang-tidy. After
# a failed stage the others still run; the exit status covers all of them.
set -euo pipefail
cd "$(dirname "$0")/.."

failed=()
times=()
stage() {
    local name=$1 begin=$SECONDS
    shift
    echo "== $name"
    "$@" || failed+=("$name")
    times+=("$name $((SECONDS - begin)) s")
}
preset() {
    cmake --preset "$1" -DGLIMRA_TESTS=ON && cmake --build --preset "$1" && ctest --preset "$1"
}

stage packages scripts/install-deps.sh build test check
stage format scripts/format.sh --check
stage layers scripts/check-layers.sh
for name in core release asan tsan; do
    stage "$name" preset "$name"
done
stage tidy scripts/tidy.sh

printf '== %s\n' "${times[@]}"
echo "== failed: ${failed[*]:-none}"
[ ${#failed[@]} -eq 0 ]
