#!/usr/bin/env bash
# Runs every libFuzzer harness of tests/fuzz for ORV_FUZZ_SECONDS seconds (default 10), as
# many at a time as there are cores, each from its seed corpus. Usage: fuzz.sh <build folder
# configured with ORV_BUILD_FUZZ>.
#
# A finding (a crash, a sanitizer report or a broken property) fails the run. The input is
# kept as <build>/fuzz-findings/<Name>/crash-...: fix the fault and copy the input to
# tests/fuzz/regressions/<Name>/, where every build replays it (test Fuzz.<Name>Inputs).
set -uo pipefail

ORV_ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
BUILD="${1:?usage: fuzz.sh <build folder>}"
SECONDS_EACH="${ORV_FUZZ_SECONDS:-10}"
source "$ORV_ROOT/scripts/sanitizer-env.sh"
export QT_QPA_PLATFORM=offscreen

run_one() {
    local name="$1"
    local lower="${name,,}"
    local work="$BUILD/fuzz-corpus/$name" findings="$BUILD/fuzz-findings/$name"
    mkdir -p "$work" "$findings"
    if "$BUILD/tests/fuzz/fuzz_$lower" -max_total_time="$SECONDS_EACH" -timeout=10 \
        -rss_limit_mb=2048 -artifact_prefix="$findings/" -print_final_stats=1 \
        "$work" "$ORV_ROOT/tests/fuzz/corpus/$name" >"$BUILD/fuzz-findings/$name.log" 2>&1; then
        echo "fuzz $name: $(grep -m1 -o 'stat::number_of_executed_units: *[0-9]*' \
            "$BUILD/fuzz-findings/$name.log" | grep -o '[0-9]*$') runs, no finding"
    else
        echo "fuzz $name: FINDING, see $BUILD/fuzz-findings/$name.log"
        tail -n 40 "$BUILD/fuzz-findings/$name.log"
        echo "The input is in $findings/; fix the fault and copy it to" \
            "tests/fuzz/regressions/$name/."
        return 1
    fi
}

harnesses=(AngleText IniFile ListText ZoneText DataSource BatchLine MaskEdit)
failed=0
running=0
pids=()
for name in "${harnesses[@]}"; do
    run_one "$name" &
    pids+=($!)
    running=$((running + 1))
    if ((running >= $(nproc))); then
        wait -n || failed=1
        running=$((running - 1))
    fi
done
while ((running > 0)); do
    wait -n || failed=1
    running=$((running - 1))
done
exit "$failed"
