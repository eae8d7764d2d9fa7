#!/usr/bin/env bash
# Builds and runs every test after installing what is missing; checks formatting and layers first.
#   ./test.sh          everything
#   ./test.sh --asan   the same with the address and undefined behaviour sanitizers
#   ./test.sh --tidy   the static analyser over the sources as well
set -euo pipefail
cd "$(dirname "$0")"

preset=dev
tidy=no
for argument in "$@"; do
  case "$argument" in
    --asan) preset=asan ;;
    --tidy) tidy=yes ;;
    *) echo "test.sh: unknown argument $argument" >&2; exit 2 ;;
  esac
done

tools/setup.sh
tools/check-format.sh
tools/check-layers.sh

cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
[ "$tidy" = no ] || tools/check-tidy.sh

export QT_LOGGING_RULES="${QT_LOGGING_RULES:-}"
export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=0}"
ctest --preset "$preset" --parallel 2
