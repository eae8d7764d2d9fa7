#!/usr/bin/env bash
# Fails, naming the places, when a source file is not as clang-format writes it.
set -euo pipefail
cd "$(dirname "$0")/.."
find src tests bench fuzz -name '*.h' -print0 -o -name '*.cpp' -print0 | xargs -0 clang-format --dry-run --Werror
echo "formato: correcto"
