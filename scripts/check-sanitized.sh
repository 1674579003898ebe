#!/usr/bin/env bash
# The checked build, run by test.sh after the plain one: everything built with clang under
# AddressSanitizer and UndefinedBehaviorSanitizer in ./build-sanitize (any finding is fatal),
# the whole test suite run there, then every fuzz harness for a bounded time (fuzz.sh).
# Expects the packages of setup.sh.
set -euo pipefail

ORV_ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
ORV_SAN_BUILD="${ORV_SAN_BUILD:-$ORV_ROOT/build-sanitize}"

# -O1 and line tables only: a quarter of the build time of -O2 -g, still readable reports.
CC=clang CXX=clang++ cmake -S "$ORV_ROOT" -B "$ORV_SAN_BUILD" -G Ninja \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O1 -gline-tables-only" \
    -DORV_SANITIZE=ON -DORV_BUILD_FUZZ=ON -DORV_BUILD_BENCH=OFF >/dev/null
cmake --build "$ORV_SAN_BUILD" --parallel "$(nproc)"

source "$ORV_ROOT/scripts/sanitizer-env.sh"
(cd "$ORV_SAN_BUILD" &&
    QT_QPA_PLATFORM=offscreen ctest --output-on-failure --parallel "$(nproc)" --timeout 900)

bash "$ORV_ROOT/scripts/fuzz.sh" "$ORV_SAN_BUILD"
