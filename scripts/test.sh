#!/usr/bin/env bash
# Sets up, builds and runs every test through ctest and checks the installed package. Then it
# builds the same tests with AddressSanitizer and UndefinedBehaviorSanitizer, runs them, and
# runs every fuzz harness for a bounded time (check-sanitized.sh); ORV_SANITIZED=0 leaves
# that part out, for a quick local run.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
cmake --build "$ORV_BUILD" --parallel "$(nproc)"
(cd "$ORV_BUILD" && QT_QPA_PLATFORM=offscreen ctest --output-on-failure --parallel "$(nproc)" --timeout 600)
# The installed package: a host built against it opens the dialogs.
bash "$ORV_ROOT/scripts/check-install.sh"
if [ "${ORV_SANITIZED:-1}" != 0 ]; then
    bash "$ORV_ROOT/scripts/check-sanitized.sh"
fi
