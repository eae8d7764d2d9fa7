#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Which lines of src/ the tests run: builds the preset coverage, runs every test, and prints a line for each folder and
# the whole. The lines of each file are in build/coverage/report.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/setup.sh
tools/setup.sh coverage

cmake --preset coverage >/dev/null
cmake --build --preset coverage
find build/coverage -name '*.gcda' -delete
ctest --preset coverage --parallel 2 --quiet || echo "coverage.sh: not every test passed" >&2
mkdir -p build/coverage/report
gcovr --root . --filter src/ --object-directory build/coverage --gcov-ignore-errors=no_working_dir_found \
  --csv build/coverage/report/lines.csv --html-details build/coverage/report/index.html build/coverage >/dev/null
awk -F, 'NR > 1 { folder = $1; sub(/\/[^\/]*$/, "", folder); lines[folder] += $2; run[folder] += $3; all += $2; hit += $3 }
  END { for (folder in lines) printf "%5.1f %%  %s\n", 100 * run[folder] / lines[folder], folder | "sort -k 3"
    close("sort -k 3"); printf "%5.1f %%  of %d lines\n", 100 * hit / all, all }' build/coverage/report/lines.csv
