#!/usr/bin/env bash
# Formats the sources; with --check only reports which are not formatted.
set -euo pipefail
cd "$(dirname "$0")/.."

case ${1:-} in
    "") mode=(-i) ;;
    --check) mode=(--dry-run -Werror) ;;
    *)
        echo "Usage: scripts/format.sh [--check]" >&2
        exit 2
        ;;
esac
scripts/install-deps.sh check
git ls-files -z -- '*.cpp' '*.h' | xargs -0 -r clang-format "${mode[@]}"
