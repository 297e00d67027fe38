#!/usr/bin/env bash
# Format, floors and clang-tidy over the sources; all three run, so that one visit shows everything.
# The result stays in build/style-figures as "passed failed".
set -uo pipefail
cd "$(dirname "$0")/.."

check_format()
{
    git ls-files -z -- '*.h' '*.cpp' | xargs -0 -r clang-format --dry-run -Werror &&
        echo "format: $(git ls-files -- '*.h' '*.cpp' | wc -l) files obey"
}

passed=0 failed=0
for check in check_format scripts/check-floors.sh scripts/check-tidy.sh; do
    if "$check"; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        echo "check-style: $(basename "$check" .sh) fails" >&2
    fi
done
echo "$passed $failed" >build/style-figures
[ "$failed" -eq 0 ]
