#!/usr/bin/env bash
# Runs every benchmark program of build/release; arguments go to each (--benchmark_filter=...).
set -euo pipefail
cd "$(dirname "$0")/.."
shopt -s nullglob
programs=(build/release/bin/*_benchmarks)
if [ "${#programs[@]}" -eq 0 ]; then
    echo "bench: there is no benchmark yet; nothing was run"
    exit 0
fi
for program in "${programs[@]}"; do
    echo "bench: $(basename "$program")"
    "$program" "$@"
done
