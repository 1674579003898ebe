#!/usr/bin/env bash
# Sets up, builds and runs every test through ctest; then the same tests built with
# AddressSanitizer and UndefinedBehaviorSanitizer, and every fuzz harness for a bounded time
# (check-sanitized.sh). ORV_SKIP_SANITIZED=1 leaves the second part out.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
(cd "$ORV_BUILD" && QT_QPA_PLATFORM=offscreen ctest --output-on-failure --parallel "$(nproc)" --timeout 600)
if [ "${ORV_SKIP_SANITIZED:-0}" != 1 ]; then
    bash "$ORV_ROOT/scripts/check-sanitized.sh"
fi
