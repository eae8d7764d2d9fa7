#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Fails, naming the places, when a source file does not say its licence or is not as clang-format writes it.
set -euo pipefail
cd "$(dirname "$0")/.."

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

find src tests bench fuzz -name '*.h' -print0 -o -name '*.cpp' -print0 | xargs -0 clang-format --dry-run --Werror
echo "formato: correcto"
