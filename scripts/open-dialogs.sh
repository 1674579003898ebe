#!/usr/bin/env bash
# Starts orv-coordsys, which opens the selection dialog. On a machine without a display (no
# DISPLAY, no WAYLAND_DISPLAY and no QT_QPA_PLATFORM chosen) it says so in one line, renders
# every dialog to PNG files in <folder> instead and prints where they are. Called by run.sh.
# Usage: open-dialogs.sh <orv-coordsys> <folder for the pictures> [options of orv-coordsys]
set -euo pipefail

program="${1:?usage: open-dialogs.sh <orv-coordsys> <folder> [options]}"
folder="${2:?usage: open-dialogs.sh <orv-coordsys> <folder> [options]}"
shift 2

if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ] || [ -n "${QT_QPA_PLATFORM:-}" ]; then
    exec "$program" "$@"
fi

echo "No display (DISPLAY and WAYLAND_DISPLAY are not set): rendering every dialog to PNG files instead."
# Qt's offscreen platform has its own remarks on standard error: shown only when it fails.
log="$(mktemp)"
trap 'rm -f "$log"' EXIT
if ! files="$("$program" --screenshots "$folder" "$@" 2>"$log")"; then
    cat "$log" >&2
    exit 1
fi
count="$(grep -c '\.png$' <<<"$files" || true)"
echo "The dialogs are in $folder ($count PNG files)."
