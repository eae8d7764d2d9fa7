#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Holds the includes of src/ to the house: a folder uses itself and the folders above it in the table of
# docs/ARCHITECTURE.md, which is the one place that knows their order. No file is an exception.
set -euo pipefail
cd "$(dirname "$0")/.."

awk '
  FNR == NR {
    if ($0 ~ /^## /) inside = ($0 == "## The house")
    if (inside && match($0, /^\| `[^`]+`/)) {
      name = substr($0, RSTART + 3, RLENGTH - 4)
      sub(/^src\//, "", name)
      place[name] = ++folders
    }
    next
  }
  function folder_of(path) {
    if (path in place) return path
    sub(/\/[^\/]*$/, "", path)
    return path
  }
  FNR == 1 {
    file = substr(FILENAME, 5)
    own = folder_of(file)
    if (file == "pch.h") nextfile
    if (!(own in place)) {
      print "src/" file " lies in a folder that the table of docs/ARCHITECTURE.md does not name"
      wrong = 1
      nextfile
    }
  }
  /^[ \t]*#[ \t]*include[ \t]+"/ {
    split($0, parts, "\"")
    if (parts[2] !~ /\//) {
      if (parts[2] !~ /\.moc$/) { print "src/" file " includes " parts[2] " without its folder"; wrong = 1 }
      next
    }
    used = folder_of(parts[2])
    if (!(used in place)) { print "src/" file " uses " parts[2] ", whose folder is unknown"; wrong = 1 }
    else if (place[used] > place[own]) { print "src/" file " uses " parts[2] ", which lies below it"; wrong = 1 }
  }
  END {
    if (!folders) { print "the table of docs/ARCHITECTURE.md was not found"; wrong = 1 }
    exit wrong
  }
' docs/ARCHITECTURE.md $(find src -name '*.h' -o -name '*.cpp') >&2
echo "capas: correcto"
