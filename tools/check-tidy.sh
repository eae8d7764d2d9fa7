#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs the static analyser over all sources, or over those given.
#   tools/check-tidy.sh [FILE...]
# It cannot read the compiler's precompiled headers, so it has a build folder without them.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset dev -B build/tidy -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON >/dev/null
ninja -C build/tidy -t targets all | sed -n 's/^\([a-z_]*[a-z]_autogen\):.*/\1/p' | sort -u |
  xargs -r ninja -C build/tidy >/dev/null
files=("$@")
[ ${#files[@]} -gt 0 ] || mapfile -t files < <(find src tests bench -name '*.cpp')
printf '%s\0' "${files[@]}" |
  xargs -0 -n 4 -P 2 clang-tidy -p build/tidy --quiet --extra-arg=-Wno-unknown-warning-option
echo "analizador: correcto"
