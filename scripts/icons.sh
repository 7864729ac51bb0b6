#!/usr/bin/env bash
# Draws the application's icon in every size from its one drawing. The pictures are kept in the repository, so
# that a build needs no drawing program. A test uses the checksum beside them to see whether they belong to
# the present drawing.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh icons
cd resources/icons
for size in 16 22 24 32 48 64 128 256 512; do
    rsvg-convert --width "$size" --height "$size" --output "glimra-$size.png" glimra.svg
done
sha256sum glimra.svg >glimra.svg.sha256
