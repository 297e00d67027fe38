#!/usr/bin/env bash
# Format, unused names, floors and clang-tidy over the sources; all run, so that one visit shows everything.
# The result stays in build/style-figures as "passed failed".
set -uo pipefail
cd "$(dirname "$0")/.."

check_format()
{
    git ls-files -z -- '*.h' '*.cpp' | xargs -0 -r clang-format --dry-run -Werror &&
        echo "format: $(git ls-files -- '*.h' '*.cpp' | wc -l) files obey"
}

# What clang-tidy sees only in a source that is compiled alone: names that a source brings in and never uses.
check_brought_names()
{
    git ls-files -z -- '*.cpp' | xargs -0 -r awk '
        function judge(    name, parts, i) {
            for (name in line)
                if (split(text, parts, "[^A-Za-z0-9_]" name "[^A-Za-z0-9_]") < 3) {
                    printf "%s:%d: \"%s\" is brought in and not used\n", file, line[name], name > "/dev/stderr"
                    bad = 1
                }
            delete line
            text = ""
        }
        FNR == 1                                       { judge(); file = FILENAME }
        /^ *using [A-Za-z_:]+::[A-Za-z_0-9]+;/         { name = $2; gsub(/.*::|;/, "", name); line[name] = FNR }
        /^ *namespace [A-Za-z_0-9]+ = /                { line[$2] = FNR }
                                                       { text = text $0 "\n" }
        END                                            { judge(); exit bad }' &&
        echo "names: every one that a source brings in is used"
}

passed=0 failed=0
for check in check_format check_brought_names scripts/check-floors.sh scripts/check-tidy.sh; do
    if "$check"; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        echo "check-style: $(basename "$check" .sh) fails" >&2
    fi
done
echo "$passed $failed" >build/style-figures
[ "$failed" -eq 0 ]
