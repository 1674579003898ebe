#!/usr/bin/env bash
# Installs the build into a temporary prefix, builds examples/host against that prefix (not the
# build tree) and runs it offscreen: the selection dialog and the wizard open and close. Also
# checks that the installed programs use the system database of the prefix. Reuses ./build
# (ORV_BUILD); builds only what is installed, so after a full build it takes seconds.
set -euo pipefail

ORV_ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
ORV_BUILD="${ORV_BUILD:-$ORV_ROOT/build}"
scratch="$(cd "$(mktemp -d)" && pwd -P)"
trap 'rm -rf "$scratch"' EXIT
prefix="$scratch/prefix"

fail() {
    echo "check-install: $*" >&2
    exit 1
}

cmake --build "$ORV_BUILD" --target OrvGeoWizard orv-coordsys orv-geodb terrameter orv_system_db \
    >/dev/null
cmake --install "$ORV_BUILD" --prefix "$prefix" >/dev/null

# Nothing from the build tree: no ORV_SYSTEM_DB, user data in the scratch folder.
unset ORV_SYSTEM_DB
export ORV_DATA_ROOT="$scratch/home"
export QT_QPA_PLATFORM=offscreen

stats="$("$prefix/bin/orv-geodb" stats)" || fail "installed orv-geodb stats failed"
grep -qF "System database (pre-defined): $prefix/share/orv/orv-system.db" <<<"$stats" ||
    fail "installed orv-geodb does not use the installed system database:"$'\n'"$stats"

launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
generator=()
command -v ninja >/dev/null && generator=(-G Ninja)
cmake -S "$ORV_ROOT/examples/host" -B "$scratch/host" "${generator[@]}" "${launcher[@]}" \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_PREFIX_PATH="$prefix" >/dev/null ||
    fail "examples/host does not configure against $prefix"
cmake --build "$scratch/host" >/dev/null || fail "examples/host does not build against $prefix"

out="$(timeout 120 "$scratch/host/orv-host-example" --data "sqlite:$scratch/data" --smoke 2>&1)" ||
    fail "examples/host failed:"$'\n'"$out"
[ "$(grep -c '^shown: ' <<<"$out")" = 2 ] ||
    fail "examples/host did not show both dialogs:"$'\n'"$out"
echo "check-install: installed, built examples/host against the prefix, both dialogs opened"
