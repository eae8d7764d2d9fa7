#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs what the project needs and this machine lacks. The one place that knows the packages' names.
#   tools/setup.sh [build] [run] [test] [fuzz]     (no argument: all but fuzz)
# Quick when nothing is missing: it asks dpkg once.
set -euo pipefail

build=(build-essential cmake ninja-build ccache pkg-config
  qt6-base-dev libgl-dev
  libxcb1-dev libxcb-randr0-dev libxcb-composite0-dev libxcb-shape0-dev libxcb-shm0-dev
  libdeflate-dev libheif-dev libcanberra-dev fonts-material-design-icons-iconfont
  libtesseract-dev libleptonica-dev)
run=(qt6-image-formats-plugins qt6-translations-l10n libcanberra-pulse xdg-utils
  libtesseract5 tesseract-ocr-spa tesseract-ocr-eng tesseract-ocr-por tesseract-ocr-fra
  fonts-inter fonts-quicksand fonts-comic-neue fonts-dejavu-core fonts-noto-color-emoji
  xvfb openbox x11-utils)
test=(libgtest-dev libgmock-dev libbenchmark-dev clang-format clang-tidy
  xvfb openbox picom xdotool xclip x11-utils x11-apps x11-xkb-utils x11-xserver-utils imagemagick libheif-examples dbus dbus-x11
  libglib2.0-bin trayer python3-dbus python3-gi
  desktop-file-utils appstream lintian man-db zsh fish python3-jsonschema)
# With the fonts and image formats of the program: they shape what the targets meet.
fuzz=(clang libclang-rt-dev qt6-image-formats-plugins fonts-inter fonts-quicksand fonts-comic-neue
  fonts-dejavu-core fonts-noto-color-emoji)

groups=("$@")
[ ${#groups[@]} -gt 0 ] || groups=(build run test)
wanted=()
for group in "${groups[@]}"; do
  declare -n packages="$group"
  wanted+=("${packages[@]}")
done

installed=$(dpkg-query -W -f='${db:Status-Abbrev}${Package}\n' 2>/dev/null | sed -n 's/^ii *//p')
missing=()
for package in "${wanted[@]}"; do
  grep -qxF -- "$package" <<<"$installed" || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

echo "Instalando: ${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "Faltan paquetes y no hay permiso para instalarlos: ${missing[*]}" >&2; exit 1; }
  as_root=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
