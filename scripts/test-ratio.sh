#!/usr/bin/env bash
# Lines of tests for 100 lines of code, blank lines left out: C++ of src/ and the add-on's Lua against everything under
# tests/ that is run or read. Fails where the tests have more than a third.
set -euo pipefail
cd "$(dirname "$0")/.."

lines() { git ls-files -z -- "$@" | xargs -0 -r cat | grep -c '[^[:space:]]' || true; }
code=$(lines 'src/*.cpp' 'src/*.h' 'addon/*.lua')
tests=$(lines 'tests/*.cpp' 'tests/*.h' 'tests/*.sh' 'tests/*.replay' 'tests/*.lua' 'tests/*.txt' 'tests/*.scenario' \
    ':!tests/**/CMakeLists.txt' ':!tests/CMakeLists.txt')
expected=$(lines 'tests/*.expected')
echo "code $code, tests $tests: $((100 * tests / code)) to 100 (and $expected lines of what scripts must print)"
[ $((3 * tests)) -le "$code" ]
