#!/usr/bin/env bash
# Runs the tests of a build folder, each program once, and ends in the figures of their cases.
#
#   scripts/run-tests.sh FOLDER [CTEST ARGUMENT...]
#
# The figures stay in FOLDER/Testing/figures as "passed failed skipped". A program that ends badly without naming a
# failed case (it crashed, it never started) counts as one failed case; so does a program NAME_tests that leaves no
# report: under Wine a crash can look like success.
set -euo pipefail
cd "$(dirname "$0")/.."
folder=$(cd "$1" && pwd)
shift
results=$folder/Testing
reports=$results/reports
rm -rf "$reports" "$results/figures"
mkdir -p "$reports"

# Where the programs leave their reports; under Wine the machine's root is drive Z.
drive=
[ ! -e "$folder/bin/tvutil_B.dll" ] || drive=Z:
export GTEST_OUTPUT="xml:$drive$reports/"
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_stack_use_after_return=1:strict_string_checks=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1}
export TSAN_OPTIONS=${TSAN_OPTIONS:-halt_on_error=1:second_deadlock_stack=1}

status=0
ctest --test-dir "$folder" --parallel "${JOBS:-$(nproc)}" --output-on-failure --no-tests=error --timeout 600 \
    --output-junit "$results/ctest.xml" "$@" || status=$?

# One line a report: "report NAME TESTS FAILED DISABLED SKIPPED"; one line a program: "program NAME run|fail|disabled".
reports()
{
    local report
    for report in "$reports"/*.xml; do
        [ -e "$report" ] || continue
        awk -v name="$(basename "$report" .xml)" '
            function value(key) {
                if (!match($0, " " key "=\"[0-9]+\""))
                    return 0
                return substr($0, RSTART + length(key) + 3, RLENGTH - length(key) - 4) + 0
            }
            /<testsuites / { tests = value("tests"); failed = value("failures") + value("errors"); off = value("disabled") }
            /<testsuite /  { skipped += value("skipped") }
            END            { print "report", name, tests + 0, failed + 0, off + 0, skipped + 0 }' "$report"
    done
}
programs()
{
    [ ! -e "$results/ctest.xml" ] ||
        sed -n 's/.*<testcase name="\([^"]*\)".* status="\([^"]*\)".*/program \1 \2/p' "$results/ctest.xml"
}
{ reports; programs; } | awk -v figures="$results/figures" '
    $1 == "report"     { tests[$2] = $3; bad[$2] = $4; off[$2] = $5; left[$2] = $6; next }
    $3 == "disabled"   { skipped++; next }
                       { programs++; good = $3 == "run" }
    ($2 in tests)      { passed += tests[$2] - bad[$2] - off[$2] - left[$2]; skipped += off[$2] + left[$2]
                         failed += !good && bad[$2] == 0 ? 1 : bad[$2]; next }
    good && !/_tests run$/ { passed++; next }
                       { failed++ }
    END {
        printf "%d %d %d\n", passed, failed, skipped > figures
        printf "%d test cases passed, %d failed, %d skipped, in %d programs\n", passed, failed, skipped, programs
    }'
read -r _ failed _ <"$results/figures"
[ "$failed" -eq 0 ] || [ "$status" -ne 0 ] || status=1
exit "$status"
