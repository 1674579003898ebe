#!/usr/bin/env bash
# Installs the Debian packages the project needs (only those missing) and configures the
# build in ./build. Sourced by run.sh and test.sh, which each build what they need.
set -euo pipefail

ORV_ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
ORV_BUILD="${ORV_BUILD:-$ORV_ROOT/build}"

ORV_PACKAGES=(
    cmake ninja-build g++ pkg-config        # build
    qt6-base-dev libqt6sql6-sqlite          # Qt Core, Gui, Widgets, Sql, Test + SQLite driver
    libproj-dev proj-data proj-bin          # PROJ, its EPSG registry and grids; cs2cs for bench
    libgtest-dev libbenchmark-dev           # tests and benchmarks
    clang libclang-rt-14-dev                # sanitizer build and libFuzzer (check-sanitized.sh)
)

missing=()
for pkg in "${ORV_PACKAGES[@]}"; do
    dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q "install ok installed" || missing+=("$pkg")
done
if ((${#missing[@]})); then
    echo "Installing: ${missing[*]}"
    SUDO=""
    [ "$(id -u)" -eq 0 ] || SUDO="sudo"
    $SUDO apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

# ORV_DEBUG_INFO=0 (CI) leaves out the debug information: the same code, a quarter less
# build time.
debug_info="-g"
[ "${ORV_DEBUG_INFO:-1}" != 0 ] || debug_info=""
cmake -S "$ORV_ROOT" -B "$ORV_BUILD" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O2 $debug_info -DNDEBUG" >/dev/null
