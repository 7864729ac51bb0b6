#!/usr/bin/env bash
# Prints the lines of tests for each 100 lines of code, without blank lines. Code is the C++ of src/ and the
# add-on's Lua; tests are all files under tests/ that are run or read. Fails when the tests have more than a
# third of the code's lines.
set -euo pipefail
cd "$(dirname "$0")/.."

lines() { git ls-files -z -- "$@" | xargs -0 -r cat | grep -c '[^[:space:]]' || true; }
code=$(lines 'src/*.cpp' 'src/*.h' 'addon/*.lua')
tests=$(lines 'tests/*.cpp' 'tests/*.h' 'tests/*.sh' 'tests/*.replay' 'tests/*.lua' 'tests/*.txt' 'tests/*.scenario' \
    ':!tests/**/CMakeLists.txt' ':!tests/CMakeLists.txt')
expected=$(lines 'tests/*.expected')
echo "code $code, tests $tests: $((100 * tests / code)) to 100 (and $expected lines of what scripts must print)"
[ $((3 * tests)) -le "$code" ]
