#!/usr/bin/env bash
# Sets up, builds and starts the host program orv-coordsys on the default database: the
# selection dialog, or, on a machine without a display, every dialog rendered to PNG files
# in ./build/screenshots (ORV_SCREENSHOTS names another folder). Options go to orv-coordsys
# (see orv-coordsys --help). Builds only the program and what it runs.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
cmake --build "$ORV_BUILD" --parallel "$(nproc)" --target orv-coordsys
exec bash "$ORV_ROOT/scripts/open-dialogs.sh" "$ORV_BUILD/apps/orv-coordsys/orv-coordsys" \
    "${ORV_SCREENSHOTS:-$ORV_BUILD/screenshots}" "$@"
