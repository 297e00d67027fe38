#!/usr/bin/env bash
# Runs clang-tidy over every source, as the preset linux-tidy joins them, in parallel. What passed once with the same
# content (its own, that of our headers it includes, its flags, .clang-tidy) is not run again, in whichever checkout that
# was: the stamps lie in TVPT_TIDY_CACHE (default ~/.cache/tvpt-tidy).
set -euo pipefail
cd "$(dirname "$0")/.."
export root=$PWD build=$PWD/build/tidy
export stamps=${TVPT_TIDY_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/tvpt-tidy}
mkdir -p "$stamps" "$build"
find "$stamps" -type f -mtime +30 -delete
if ! cmake --preset linux-tidy >"$build/configure.log" 2>&1; then
    cat "$build/configure.log" >&2
    exit 1
fi
rm -rf "$build/findings"
mkdir "$build/findings"

# One line a source of ours, even where several programs compile it: FILE <tab> COMMAND. The database keeps one entry of
# each, since clang-tidy would run them all. Joined sources get the one file name whose parts the analyzer follows.
mv "$build/compile_commands.json" "$build/all_commands.json"
awk -v root="$root/" -v database="$build/compile_commands.json" '
    /^ *"command": /    { command = $0; sub(/^ *"command": "/, "", command); sub(/",?$/, "", command) }
    /^ *"directory": /  { directory = $0; sub(/^ *"directory": "/, "", directory); sub(/",?$/, "", directory) }
    /^ *"file": /       { file = $0; sub(/^ *"file": "/, "", file); sub(/",?$/, "", file) }
    /^ *}/              {
        if (index(file, root) == 1 && !(file in seen)) {
            seen[file] = 1
            sub(/ -o .*/, "", command)
            sub(/\/Unity\/unity_/, "/Unity/UnifiedSource-", file)
            line = command # as the shell has it
            gsub(/\\\\/, "\001", line); gsub(/\\"/, "\"", line); gsub(/\001/, "\\", line)
            print file "\t" line
            printf "%s{ \"directory\": \"%s\", \"command\": \"%s -c %s\", \"file\": \"%s\" }",
                (count++ ? ",\n" : "[\n"), directory, command, file, file > database
        }
    }
    END                 { print "\n]" > database }' "$build/all_commands.json" >"$build/entries"
[ -s "$build/entries" ] || { echo "check-tidy: no sources in $build/all_commands.json" >&2; exit 1; }
find "$build" -path '*/Unity/unity_*' -print0 | while IFS= read -r -d '' joined; do
    cp -p "$joined" "${joined/Unity\/unity_/Unity/UnifiedSource-}"
done
base=$({ clang-tidy --version; git ls-files -z -- .clang-tidy "*/.clang-tidy" | xargs -0 cat; } | sha256sum)
export base

# stamp_of FILE COMMAND: a digest of all that decides what clang-tidy says of it.
stamp_of()
{
    {
        echo "$base $2"
        # Ours only; system headers come with the compiler's version.
        eval "$2 -MM '$1'" | tr -s ' \\' '\n\n' | grep -v ':$' | sort -u | xargs -r cat
    } | sed "s|$root||g" | sha256sum | cut -d ' ' -f 1
}

check()
{
    local file=${1%%$'\t'*} stamp
    stamp=$(stamp_of "$file" "${1#*$'\t'}")
    if [ -e "$stamps/$stamp" ]; then
        echo unchanged
    elif clang-tidy -p "$build" --quiet "$file" >"$build/findings/$stamp" 2>"$build/findings/$stamp.err"; then
        touch "$stamps/$stamp"
        rm -f "$build/findings/$stamp" "$build/findings/$stamp.err"
        echo passes
    else
        echo "fails ${file#"$root/"}"
    fi
}
export -f stamp_of check

tr '\n' '\0' <"$build/entries" | xargs -0 -n 1 -P "${JOBS:-$(nproc)}" bash -c 'set -euo pipefail; check "$1"' check \
    >"$build/verdicts"
awk '{ count[$1]++ } END { printf "clang-tidy: %d units, %d unchanged since they passed, %d run and passed, %d fail\n",
    NR, count["unchanged"], count["passes"], count["fails"] }' "$build/verdicts"
[ "$(wc -l <"$build/verdicts")" -eq "$(wc -l <"$build/entries")" ] || { echo "check-tidy: units without a verdict" >&2; exit 1; }
grep -q '^fails' "$build/verdicts" || exit 0

# A finding in a header comes once a source; once is enough.
cat "$build/findings/"* | awk '
    /: (error|warning): /   { show = !($0 in seen); seen[$0] = 1 }
    show || /^Error/        { print }' | grep -v -e '^Suppressed' -e 'warnings\? generated' || true
sed -n 's/^fails /clang-tidy: does not pass: /p' "$build/verdicts" | sort
exit 1
