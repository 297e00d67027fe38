#!/usr/bin/env bash
# Runs clang-tidy over the sources that build/release compiles, in parallel; what passed once with the same content
# (its own, that of our headers it includes, its flags, .clang-tidy) is not run again.
#
#   scripts/check-tidy.sh [BUILD FOLDER]        default build/release; the folder must be built
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
build=$(cd "${1:-build/release}" && pwd)
work=$root/build/tidy
mkdir -p "$work/passed" "$work/now"
rm -f "$work/now/"*

# One entry a source of ours, even where several programs compile it: clang-tidy would run each entry.
#   entries: FILE <tab> OBJECT <tab> COMMAND
awk -v root="$root/" '
    /^ *"command": /    { command = $0; sub(/^ *"command": "/, "", command); sub(/",?$/, "", command) }
    /^ *"directory": /  { directory = $0; sub(/^ *"directory": "/, "", directory); sub(/",?$/, "", directory) }
    /^ *"file": /       { file = $0; sub(/^ *"file": "/, "", file); sub(/",?$/, "", file) }
    /^ *}/              {
        if (index(file, root) == 1 && !(file in seen)) {
            seen[file] = 1
            object = command; sub(/^.* -o /, "", object); sub(/ -c .*$/, "", object)
            print file "\t" object "\t" command
            printf "%s{ \"directory\": \"%s\", \"command\": \"%s\", \"file\": \"%s\" }",
                (count++ ? ",\n" : "[\n"), directory, command, file > database
        }
    }
    END                 { print "\n]" > database }' \
    database="$work/compile_commands.json" "$build/compile_commands.json" >"$work/entries"
[ -s "$work/entries" ] || { echo "check-tidy: no sources in $build/compile_commands.json" >&2; exit 1; }

# What each object was built from, as the compiler told Ninja: OBJECT <tab> FILE, ours only. A compiler cache with a base
# folder tells the files from the build folder on.
(cd "$build" && ninja -t deps) | awk -v root="$root/" -v build="$build" '
    function absolute(path)
    {
        if (path !~ /^\//)
            path = build "/" path
        while (sub(/\/[^\/]+\/\.\.\//, "/", path))
            ;
        return path
    }
    /^[^ ].*: #deps/    { object = $0; sub(/: #deps.*/, "", object); next }
    /^ /                { sub(/^ +/, ""); $0 = absolute($0)
                          if (index($0, root) == 1 && index($0, build) != 1) print object "\t" $0 }' \
    >"$work/includes"
cut -f 2 "$work/includes" | sort -u | tr '\n' '\0' | xargs -0 -r sha256sum >"$work/contents"

# The key of a source; those that have no stamp yet are to do.
base=$({ clang-tidy --version; git ls-files -z -- .clang-tidy "*/.clang-tidy" | xargs -0 cat; } | sha256sum)
awk -F '\t' -v base="$base" '
    FILENAME ~ /contents$/  { split($0, part, "  "); content[part[2]] = part[1]; next }
    FILENAME ~ /includes$/  { sources[$1] = sources[$1] " " $2 "=" content[$2]; next }
    !($2 in sources)        { print "check-tidy: " $1 " is not built" > "/dev/stderr"; exit 1 }
                            { print $1 "\t" base " " $3 " " sources[$2] }' \
    "$work/contents" "$work/includes" "$work/entries" >"$work/keys"
while IFS=$'\t' read -r file text; do
    key=$(sha256sum <<<"$text")
    [ -e "$work/passed/${key%% *}" ] || printf '%s\0%s\0' "$file" "${key%% *}"
done <"$work/keys" >"$work/todo"

total=$(wc -l <"$work/entries")
todo=$(($(tr -dc '\0' <"$work/todo" | wc -c) / 2))
echo "clang-tidy: $total sources, $((total - todo)) unchanged since they passed, $todo to run"

# The flags are the release compiler's; clang need not know each of them.
# shellcheck disable=SC2016
xargs -0 -r -n 2 -P "${JOBS:-$(nproc)}" bash -c '
    if clang-tidy -p "$0" --quiet --extra-arg=-Wno-unknown-warning-option "$1" >"$0/now/$2" 2>"$0/now/$2.err"; then
        touch "$0/passed/$2"
        rm -f "$0/now/$2" "$0/now/$2.err"
    else
        echo "    $1" >>"$0/now/failed"
    fi' "$work" <"$work/todo"

[ -e "$work/now/failed" ] || exit 0
# A finding in a header comes once a source; once is enough.
cat "$work/now/"* | awk '
    /: (error|warning): /   { show = !($0 in seen); seen[$0] = 1 }
    show || /^Error/        { print }' | grep -v -e '^Suppressed' -e 'warnings\? generated' -e '^    /' || true
echo "clang-tidy: $(wc -l <"$work/now/failed") sources do not pass:"
sort "$work/now/failed"
exit 1
