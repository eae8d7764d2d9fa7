#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs what the project needs and this machine lacks. The one place that knows the packages' names.
#   tools/setup.sh [build] [run] [test] [fuzz] [coverage] [root]     (no argument: build, run and test)
#   tools/setup.sh --list [GROUP...]                      only names what would be missing
# Before it installs it says what and how much. Quick when nothing is missing: it asks dpkg once.
set -euo pipefail

build=(build-essential cmake ninja-build pkg-config
  qt6-base-dev libgl-dev
  libxcb1-dev libxcb-randr0-dev libxcb-composite0-dev libxcb-shape0-dev libxcb-shm0-dev
  libxcb-ewmh-dev libxcb-xfixes0-dev libxcb-xinput-dev libxcb-xkb-dev libxcb-xtest0-dev
  qt6-base-private-dev libwayland-dev libwayland-bin wayland-protocols
  libdeflate-dev libheif-dev libcanberra-dev fonts-material-design-icons-iconfont
  libtesseract-dev)
run=(qt6-image-formats-plugins qt6-translations-l10n qt6-wayland xdg-utils
  libtesseract5 tesseract-ocr-spa tesseract-ocr-eng
  fonts-inter fonts-quicksand fonts-comic-neue fonts-dejavu-core)
# The virtual desktop, where there is no display.
display=(xvfb openbox x11-utils x11-xserver-utils dbus-daemon)
test=("${display[@]}" ccache libgtest-dev libgmock-dev libbenchmark-dev clang-format clang-tidy
  picom kwin-x11 kwin-style-breeze xfwm4 wmctrl xdotool xclip x11-apps x11-xkb-utils imagemagick dbus dbus-x11
  sway grim wl-clipboard
  libglib2.0-bin trayer python3-dbus python3-gi tesseract-ocr-por tesseract-ocr-fra fonts-noto-color-emoji
  desktop-file-utils appstream lintian man-db zsh fish python3-jsonschema)
# With the fonts and image formats of the program: they shape what the targets meet.
fuzz=(clang libclang-rt-dev qt6-image-formats-plugins fonts-inter fonts-quicksand fonts-comic-neue
  fonts-dejavu-core fonts-noto-color-emoji)
# What tools/coverage.sh counts with.
coverage=(gcovr)
# What tools/bare-root.sh makes its roots with.
root=(mmdebstrap)

list=no
if [ "${1:-}" = --list ]; then
  list=yes
  shift
fi
groups=("$@")
[ ${#groups[@]} -gt 0 ] || groups=(build run test)
wanted=()
for group in "${groups[@]}"; do
  case "$group" in
    build | run | test | fuzz | coverage | root) declare -n packages="$group" ;;
    *) echo "setup.sh: unknown group $group" >&2; exit 2 ;;
  esac
  wanted+=("${packages[@]}")
  if [ "$group" = run ] && [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    wanted+=("${display[@]}")
  fi
done

command -v dpkg-query >/dev/null || {
  echo "setup.sh solo sabe instalar en Debian y derivados; docs/primeros-pasos.md dice qué hace falta en otros." >&2
  exit 1
}
installed=$(dpkg-query -W -f='${db:Status-Abbrev}${Package}\n' 2>/dev/null | sed -n 's/^ii *//p')
missing=()
for package in "${wanted[@]}"; do
  grep -qxF -- "$package" <<<"$installed" || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0
if [ "$list" = yes ]; then
  printf '%s\n' "${missing[@]}" | sort -u
  exit 0
fi

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "Faltan paquetes y no hay permiso para instalarlos: ${missing[*]}" >&2; exit 1; }
  as_root=(sudo)
fi
"${as_root[@]}" apt-get update -qq
install=(apt-get install --no-install-recommends "${missing[@]}")
plan=$(LC_ALL=C "${install[@]}" --assume-no 2>&1) || true
echo "Se van a instalar:"
# The names are the indented lines after that heading.
sed -n '/^The following NEW packages/,/^[^ ]/s/^  */  /p' <<<"$plan"
sed -nE 's/^Need to get (.*) of archives.*/Descarga: \1./p
  s/^After this operation, (.*) of additional disk space will be used.*/En disco: \1./p' <<<"$plan"
# A package's configuration must not ask: nobody sees the question.
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive "${install[@]}" -y -qq >/dev/null
