#!/usr/bin/env bash
# Configures a preset of CMakePresets.json and builds it: scripts/build.sh PRESET [TARGET...]
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
shift
folder=build/${preset#linux-}
[ "$preset" != windows-release ] || folder=build/windows
mkdir -p "$folder"

# The configuration's chatter is only worth reading when it fails.
if ! cmake --preset "$preset" >"$folder/configure.log" 2>&1; then
    cat "$folder/configure.log" >&2
    exit 1
fi
targets=()
[ $# -eq 0 ] || targets=(--target "$@")
exec cmake --build "$folder" --parallel "${JOBS:-$(nproc)}" "${targets[@]}"
