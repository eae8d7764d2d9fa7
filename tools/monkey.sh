#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Uses the program at random until it breaks; tools/monkey.py says how.
#   tools/bare-root.sh --user trixie tools/monkey.sh PRESET [--seed N] [--seconds S] [--steps N]
# PRESET is what is built and used: asan, tsan or dev. It clicks on whatever there is, file dialogs included, so it works
# nowhere but as an ordinary user within a root of its own, where there is nothing to lose.
set -euo pipefail
cd "$(dirname "$0")/.."
[ $# -ge 1 ] || { sed -n '3,6s/^# \?//p' "$0" >&2; exit 2; }
if [ "$(id -u)" -eq 0 ] || [ ! -e /etc/pintalux-bare-root ]; then
  echo "monkey: solo como usuario normal dentro de una raíz propia: tools/bare-root.sh --user trixie tools/monkey.sh …" >&2
  exit 2
fi
preset=$1
shift
tools/setup.sh
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" --target pintalux pintalux_demo_window
unset DISPLAY WAYLAND_DISPLAY
PINTALUX_BUILD="build/$preset" exec tools/virtual-display.sh tools/monkey.py "build/$preset/pintalux" "$@"
