#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds Pintalux, after installing what is missing, and runs it with the arguments given:
#   ./run.sh --selftest out
# Starts a virtual display with a few windows on it when there is no display.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)

"$here/tools/setup.sh" build run >&2
{
  cmake -S "$here" --preset release -DPINTALUX_TESTS=OFF -DPINTALUX_BENCH=OFF
  cmake --build "$here/build/release" --target pintalux pintalux_demo_window
} >"$here/build-release.log" 2>&1 || { cat "$here/build-release.log" >&2; exit 1; }
rm -f "$here/build-release.log"

program="$here/build/release/pintalux"
case " $* " in
  *" --help "* | *" --version "* | *" --annotate "* | *" --render-icon "*) exec "$program" "$@" ;;
esac
PINTALUX_BUILD="$here/build/release" exec "$here/tools/virtual-display.sh" "$program" "$@"
