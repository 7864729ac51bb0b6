#!/usr/bin/env bash
# Checks that no folder of src/ includes a folder that is listed below it in docs/architecture.md.
set -euo pipefail
cd "$(dirname "$0")/.."

git ls-files -- 'src/*.h' 'src/*.cpp' | awk '
    # Each row of the list begins with a folder in backticks.
    FILENAME == "docs/architecture.md" {
        if ($0 ~ /^## /) inLayers = ($0 == "## Layers")
        if (inLayers && match($0, /^\| `[a-z0-9\/]+\/`/)) level[substr($0, 4, RLENGTH - 5)] = ++levels
        next
    }
    {
        file = $0
        folder = folderOf(substr(file, 5))
        if (!(folder in level)) {
            print file ": its folder is not in the list of docs/architecture.md"
            failed = 1
            next
        }
        line = 0
        while ((getline text < file) > 0) {
            ++line
            if (!match(text, /^#include "[^"]+"/)) continue
            included = folderOf(substr(text, 11, RLENGTH - 11))
            if (included == "" || included == folder) continue
            if (!(included in level)) level[included] = 0
            if (level[included] > level[folder]) {
                print file ":" line ": " folder "/ may not use " included "/, which stands below it in docs/architecture.md"
                failed = 1
            }
        }
        close(file)
    }
    function folderOf(path) { return sub(/\/[^\/]*$/, "", path) ? path : "" }
    END {
        if (!levels) { print "docs/architecture.md has no list of layers"; failed = 1 }
        exit failed
    }
' docs/architecture.md -
