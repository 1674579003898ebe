#!/usr/bin/env bash
# Sets up, builds and runs the main program on the default database.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
exec "$ORV_BUILD/apps/orv-geodb/orv-geodb" groups "$@"
