#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds and runs every test after installing what is missing; checks formatting and layers first.
#   ./test.sh          everything
#   ./test.sh --asan   the same with the address and undefined behaviour sanitizers
#   ./test.sh --tsan   the same with the thread sanitizer
#   ./test.sh --tidy   the static analyser over the sources as well
#   ./test.sh --fuzz   nothing but the fuzz targets over what reads files, half a minute each
set -euo pipefail
cd "$(dirname "$0")"

preset=dev
tidy=no
for argument in "$@"; do
  case "$argument" in
    --asan) preset=asan ;;
    --tsan) preset=tsan ;;
    --tidy) tidy=yes ;;
    --fuzz) preset=fuzz ;;
    *) echo "test.sh: unknown argument $argument" >&2; exit 2 ;;
  esac
done

if [ "$preset" = fuzz ]; then
  tools/setup.sh build fuzz
  cmake --preset fuzz >/dev/null
  cmake --build --preset fuzz
  exec tools/run-fuzz.sh
fi

tools/setup.sh
tools/check-format.sh
tools/check-layers.sh

cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
[ "$tidy" = no ] || tools/check-tidy.sh

export QT_LOGGING_RULES="${QT_LOGGING_RULES:-}"
ctest --preset "$preset" --parallel 2
# What was left out says why.
grep -h -B 2 '^\[  SKIPPED \] .* ms)$' "build/$preset/Testing/Temporary/LastTest.log" || true
