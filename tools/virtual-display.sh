#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs COMMAND with a display: the one there is, or else a virtual desktop with a window manager and three windows.
#   tools/virtual-display.sh COMMAND [ARGUMENT...]
# PINTALUX_BUILD names the build folder whose demonstration windows furnish the desktop (build/dev by default).
# Everything started here ends with COMMAND, whose exit status is passed on.
set -uo pipefail

[ $# -gt 0 ] || { sed -n '3,6s/^# //p' "$0" >&2; exit 2; }
[ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] || exec "$@"

here=$(cd "$(dirname "$0")/.." && pwd)
demo="${PINTALUX_BUILD:-$here/build/dev}/tests/desktop/windows/pintalux_demo_window"
scratch=
pids=()
command_pid=

# Asks a process to end, and makes it after three seconds.
end() {
  local tries
  kill "$1" 2>/dev/null || return
  for ((tries = 0; tries < 60; tries++)); do
    kill -0 "$1" 2>/dev/null || break
    sleep 0.05
  done
  kill -KILL "$1" 2>/dev/null
  wait "$1" 2>/dev/null
}

finish() {
  trap '' INT TERM HUP
  [ -z "$command_pid" ] || end "$command_pid"
  local index
  for ((index = ${#pids[@]} - 1; index >= 0; index--)); do
    end "${pids[index]}"
  done
  [ -z "$scratch" ] || rm -rf "$scratch"
}
trap finish EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM
scratch=$(mktemp -d) || exit 1

fail() { echo "virtual-display: $1" >&2; exit 1; }

# Waits up to a minute for a command to succeed: what is loaded with other work is slow, not broken.
await() {
  local end=$((SECONDS + 60))
  until "$@" >/dev/null 2>&1; do
    [ "$SECONDS" -lt "$end" ] || return 1
    sleep 0.05
  done
}

background() { "$@" >/dev/null 2>&1 & pids+=($!); }

unset WAYLAND_DISPLAY XAUTHORITY
mkdir -m 700 "$scratch/runtime"
if [ -z "${XDG_RUNTIME_DIR:-}" ]; then export XDG_RUNTIME_DIR="$scratch/runtime"; fi

Xvfb -displayfd 3 -screen 0 1920x1080x24 -noreset -nolisten tcp 3>"$scratch/display" >/dev/null 2>&1 &
pids+=($!)
await test -s "$scratch/display" || fail "Xvfb no arranca"
DISPLAY=":$(tr -d '[:space:]' <"$scratch/display")"
export DISPLAY
await xdpyinfo || fail "Xvfb no responde"

if [ -z "${DBUS_SESSION_BUS_ADDRESS:-}" ] && command -v dbus-daemon >/dev/null; then
  background dbus-daemon --session --nofork --address="unix:path=$scratch/runtime/bus"
  await test -S "$scratch/runtime/bus" || fail "dbus-daemon no arranca"
  export DBUS_SESSION_BUS_ADDRESS="unix:path=$scratch/runtime/bus"
fi

# It names itself early. Until it has looked through the windows that there are, which without font caches takes
# seconds, it overlooks for good one that is shown; then it runs this.
background openbox --sm-disable --startup "touch '$scratch/managed'"
await test -e "$scratch/managed" || fail "openbox no arranca"
xsetroot -solid '#5B7C99'

# Title, geometry, colour and text of the windows; the last one is in front.
windows=0
furnish() {
  background env QT_QPA_PLATFORM=xcb "$demo" --title "$1" --geometry "$2" --color "$3" --text "$4"
  windows=$((windows + 1))
  mapped() { [ "$(xprop -root _NET_CLIENT_LIST | grep -o 0x | wc -l)" -ge "$windows" ]; }
  await mapped || fail "la ventana de demostración no aparece"
}
if [ -x "$demo" ]; then
  furnish 'Informe de ventas' 760x560+120+90 '#3B6FE0' \
    $'Las ventas del primer semestre crecieron un 18 %.\nEl mejor mes fue junio, con 1.240 pedidos.\nPendiente: revisar el presupuesto de diseño.'
  furnish 'Visitas por mes' 640x480+1120+130 '#2E9E6B' \
    $'Más de la mitad llega desde el móvil.\nLa página de inicio carga en 0,8 segundos.'
  furnish 'Notas de la reunión' 620x420+640+520 '#D9480F' \
    $'Asisten: Íñigo, Begoña y Raúl.\nPróxima cita: el miércoles a las 10:30.\nTraer la captura del error anotada.'
  sleep 0.4 # their first painting
fi

"$@" <&0 & # in the background, so that a signal is answered at once; it still reads our input
command_pid=$!
wait "$command_pid"
status=$?
command_pid=
exit "$status"
