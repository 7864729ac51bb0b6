#!/usr/bin/env bash
# All checks and all tests: the sources' form, the core alone by both compilers, and everything as released and
# under the address, undefined-behaviour and thread sanitizers. A stage that fails keeps none of the others from
# running; the exit status tells of all of them.
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
for name in core core-clang release asan tsan; do
    stage "$name" preset "$name"
done
stage tidy scripts/tidy.sh

printf '== %s\n' "${times[@]}"
echo "== failed: ${failed[*]:-none}"
[ ${#failed[@]} -eq 0 ]
