#!/usr/bin/env bash
# Holds the includes to the layers: each file may use its own layer and those beneath it, never one above.
set -euo pipefail
cd "$(dirname "$0")/../src"

# The first pattern that matches a path gives its layer, from the bottom up.
layer_of() {
  case "$1" in
    platform/*) echo 0 ;;
    model/* | capture/CaptureAction.* | capture/CaptureResult.* | settings/Settings.* | settings/SettingsFile.*) echo 1 ;;
    app/HUD.*) echo 2 ;;
    render/* | capture/ScreenCapture* | capture/OCR* | capture/HotKeyCenter.*) echo 3 ;;
    capture/* | controls/* | editor/* | settings/* | app/Thumbnail* | app/Pin* | app/AppIcon.* | app/BrandMark.* | app/MainMenu.* | app/MenuStyle.* | app/Theme.*) echo 4 ;;
    app/* | selftest/*) echo 5 ;;
    *) echo "check-layers: no layer is known for src/$1" >&2; exit 2 ;;
  esac
}

wrong=0
while IFS=: read -r file line; do
  included=$(sed -E 's/.*"([^"]+)".*/\1/' <<<"$line")
  file=${file#./}
  [ "$file" != pch.h ] || continue
  [ -e "$included" ] || continue # the toolkit's or generated
  if [ "$(layer_of "$included")" -gt "$(layer_of "$file")" ]; then
    echo "src/$file uses $included, which lies above it" >&2
    wrong=1
  fi
done < <(grep -rE --include='*.h' --include='*.cpp' '^#include "' .)
[ "$wrong" -eq 0 ] && echo "capas: correcto"
exit "$wrong"
