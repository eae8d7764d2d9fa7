#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Makes the package for each release in a bare root of it, tries it in another, and leaves it in build/packages.
#   tools/make-package.sh RELEASE...
#   tools/make-package.sh --try PACKAGE     installs, runs, removes and purges it here; for such a root
set -euo pipefail
cd "$(dirname "$0")/.."

say() { echo "make-package: $*"; }
fail() { say "$@" >&2; exit 1; }

# What is left of it on this system, apart from these sources and what was shared with the root.
left() { find / -xdev -path "$PWD" -prune -o -path /mnt -prune -o -iname '*pintalux*' -print; }

# What installing it takes, as apt reckons it.
weight() {
  LC_ALL=C apt-get install --assume-no "$@" 2>/dev/null |
    sed -nE 's/^([0-9]+) upgraded, ([0-9]+) newly.*/\2 paquetes/p; s/^After this operation, (.*) of add.*/\1/p' | paste -sd ' '
}

try() {
  local package=$1 server tries
  apt-get update -qq
  say "con lo que necesita: $(weight --no-install-recommends "$package")"
  say "con lo que recomienda: $(weight --install-recommends "$package")"

  # What it depends on is enough to start and to draw.
  apt-get install -y -qq --no-install-recommends "$package" >/dev/null
  pintalux --version
  pintalux --render-icon /tmp/icons
  echo '{"annotations": [{"kind": "arrow", "start": [9, 9], "end": [90, 90], "color": "#FF0000", "lineWidth": 4}]}' >/tmp/marks.json
  pintalux --annotate /tmp/icons/icon_128x128.png --marks /tmp/marks.json --output /tmp/drawn.png
  [ -s /tmp/drawn.png ] || fail "no dibuja"
  apt-get purge -y -qq pintalux >/dev/null

  apt-get install -y -qq --install-recommends "$package" >/dev/null
  apt-get install -y -qq --no-install-recommends xvfb >/dev/null
  Xvfb :77 -screen 0 1280x800x24 -noreset 2>/dev/null &
  server=$!
  for ((tries = 0; tries < 600; tries++)); do [ -S /tmp/.X11-unix/X77 ] && break; sleep 0.1; done
  DISPLAY=:77 timeout 60 pintalux --capture fullScreen --output /tmp/screen.png
  DISPLAY=:77 timeout 300 pintalux --selftest /tmp/out
  kill "$server"
  [ -s /tmp/screen.png ] || fail "no captura"

  apt-get remove -y -qq pintalux >/dev/null
  [ ! -e /usr/bin/pintalux ] || fail "sigue ahí"
  dpkg --purge pintalux 2>/dev/null
  rm -rf /tmp/* "$HOME"/{.config,.local,.cache}
  [ -z "$(left)" ] || fail "queda: $(left)"
  say "instalado, usado, quitado y purgado"
}

build() {
  tools/setup.sh build
  cmake --preset release -DPINTALUX_TESTS=OFF -DPINTALUX_BENCH=OFF >/dev/null
  cmake --build --preset release --target pintalux desktop_files
  (cd build/release && cpack -G DEB >/dev/null)
  cp build/release/*.deb "$1"
}

case "${1:-}" in
  --try) try "$2" ;;
  --build) build "$2" ;;
  "" | -*) sed -n '3,5s/^# \?//p' "$0" >&2; exit 2 ;;
  *)
    for release in "$@"; do
      mkdir -p "build/packages/$release"
      rm -f "build/packages/$release"/*.deb
      tools/bare-root.sh --share "build/packages/$release" "$release" tools/make-package.sh --build /mnt
      tools/bare-root.sh --share "build/packages/$release" "$release" sh -c 'tools/make-package.sh --try /mnt/*.deb'
    done
    ;;
esac
