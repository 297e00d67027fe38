#!/usr/bin/env bash
# Builds the fuzz targets and runs each for FUZZ_SECONDS (60), one after another. What they find on the way is kept in
# build/fuzz/corpus/NAME, an input that breaks something in build/fuzz/findings/NAME; `make fuzz FUZZ_TARGET=NAME` runs
# only one. The figures stay in build/fuzz/Testing/figures as "passed failed skipped", in targets.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${FUZZ_SECONDS:-60}
scripts/build.sh linux-fuzz fuzzers

shopt -s nullglob
mkdir -p build/fuzz/Testing
rm -f build/fuzz/Testing/figures
targets=(build/fuzz/bin/${FUZZ_TARGET:-*_fuzzer})
if [ ! -x "${targets[0]:-}" ]; then
    echo "fuzz: there is no fuzz target ${FUZZ_TARGET:-yet}; nothing was run"
    [ -z "${FUZZ_TARGET:-}" ]
    exit
fi

failed=0
for target in "${targets[@]}"; do
    name=$(basename "$target")
    corpus=build/fuzz/corpus/$name
    findings=build/fuzz/findings/$name
    mkdir -p "$corpus" "$findings"
    options=(-max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="$findings/")
    [ ! -f "$target.dict" ] || options+=(-dict="$target.dict")
    mapfile -t seeds <"$target.seeds"
    echo "fuzz: $name for $seconds s"
    if "$target" "${options[@]}" "$corpus" "${seeds[@]}" >"build/fuzz/$name.log" 2>&1; then
        grep -E '^stat::(number_of_executed_units|average_exec_per_sec|peak_rss_mb)' "build/fuzz/$name.log" || true
    else
        failed=$((failed + 1))
        tail -n 40 "build/fuzz/$name.log"
        echo "fuzz: $name found a fault; its input is in $findings" >&2
    fi
done
echo "$((${#targets[@]} - failed)) $failed 0" >build/fuzz/Testing/figures
echo "fuzz: $((${#targets[@]} - failed)) targets found nothing, $failed found a fault"
[ "$failed" -eq 0 ]
