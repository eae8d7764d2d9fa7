#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The virtual display shows its windows also at the first start of a system, when fonts have no caches yet and the
# window manager takes its time.
#   tests/virtual-display.sh BUILD_FOLDER     (with the target pintalux_demo_window built)
set -euo pipefail
build=$(cd "$1" && pwd)
tools=$(cd "$(dirname "$0")/../tools" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cat >"$work/fonts.conf" <<END
<!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">
<fontconfig><dir>/usr/share/fonts</dir><cachedir>$work/cache</cachedir></fontconfig>
END
shown=$(env -u DISPLAY -u WAYLAND_DISPLAY -u DBUS_SESSION_BUS_ADDRESS HOME="$work" XDG_RUNTIME_DIR= \
  FONTCONFIG_FILE="$work/fonts.conf" PINTALUX_BUILD="$build" "$tools/virtual-display.sh" xprop -root _NET_CLIENT_LIST)
[ "$(grep -o 0x <<<"$shown" | wc -l)" = 3 ] || { echo "shown: $shown" >&2; exit 1; }
[ -d "$work/cache" ] || { echo "it found caches" >&2; exit 1; }
echo "escritorio virtual: correcto"
