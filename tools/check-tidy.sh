#!/usr/bin/env bash
# Runs the static analyser over all sources of a build folder that has compile_commands.json.
#   tools/check-tidy.sh build/dev
set -euo pipefail
cd "$(dirname "$0")/.."
find src tests bench -name '*.cpp' -print0 |
  xargs -0 -n 4 -P 2 clang-tidy -p "$1" --quiet --extra-arg=-Wno-unknown-warning-option \
    --extra-arg=-Wno-ignored-optimization-argument 2>/dev/null
echo "analizador: correcto"
