#!/usr/bin/env bash
# Builds with coverage, runs the tests and writes which lines they reach: build/coverage/report/index.html.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/build.sh linux-coverage
find build/coverage -name '*.gcda' -delete        # counts of an earlier run
find build/coverage/CMakeFiles -name '*.gcno' -delete # CMake's own trial compilations
status=0
scripts/run-tests.sh build/coverage || status=$?
mkdir -p build/coverage/report
gcovr --root . --object-directory build/coverage --exclude 'tests/' --exclude 'build/' --exclude-throw-branches \
    --html-details build/coverage/report/index.html --txt build/coverage/report/coverage.txt --print-summary \
    build/coverage
echo "coverage: build/coverage/report/index.html"
exit "$status"
