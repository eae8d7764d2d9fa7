#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Fails, naming the places, when a source file does not say its licence or is not as clang-format writes it.
# Each release of that tool lays code out a little differently: this one decides, and without it that is not checked.
set -euo pipefail
cd "$(dirname "$0")/.."
decides=14

# At its top; a program's first line belongs to the system.
unlicensed=$(find src tests bench fuzz tools data .ci CMakeLists.txt -type f \
  '(' -name '*.h' -o -name '*.cpp' -o -name '*.sh' -o -name '*.py' -o -name '*.cmake' -o -name CMakeLists.txt \
  -o -path .ci/run ')' -exec awk 'FNR > 2 { nextfile }
  /^(\/\/|#) SPDX-License-Identifier: MIT$/ { said[FILENAME] = 1 }
  END { for (i = 1; i < ARGC; ++i) if (!(ARGV[i] in said)) print ARGV[i] }' '{}' +)
if [ -n "$unlicensed" ]; then
  printf '%s: no SPDX-License-Identifier in its first lines\n' $unlicensed >&2
  exit 1
fi

for formatter in "clang-format-$decides" clang-format; do
  version=$("$formatter" --version 2>/dev/null | grep -oE 'version [0-9]+' | tr -dc 0-9) || continue
  [ "$version" = "$decides" ] || continue
  find src tests bench fuzz -name '*.h' -print0 -o -name '*.cpp' -print0 | xargs -0 "$formatter" --dry-run --Werror
  echo "formato: correcto"
  exit 0
done
echo "formato: SIN COMPROBAR; lo decide clang-format $decides, que aquí no está" >&2
