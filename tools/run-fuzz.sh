#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs every fuzz target for a bounded time; ends with an error at the first finding, whose input it names.
#   tools/run-fuzz.sh [SECONDS]     (30 for each target; needs the target fuzz of the preset fuzz)
# What a run learns stays in build/fuzz/corpus; fuzz/corpus holds the seeds, and the inputs of mended faults.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-30}
programs=build/fuzz/fuzz

export LSAN_OPTIONS="suppressions=fuzz/leaks.txt:print_suppressions=0"
for program in "$programs"/fuzz_*; do
  [ -f "$program" ] || continue
  reader=${program##*/fuzz_}
  learned=build/fuzz/corpus/$reader
  log=build/fuzz/$reader.log
  mkdir -p "$learned"
  corpus=("$learned")
  [ ! -d "fuzz/corpus/$reader" ] || corpus+=("fuzz/corpus/$reader")
  if ! "$program" -max_total_time="$seconds" -timeout=30 -rss_limit_mb=3000 -max_len=4096 -print_final_stats=1 \
    -artifact_prefix="build/fuzz/$reader-" "${corpus[@]}" >"$log" 2>&1; then
    echo "fuzz: $reader: un fallo; véase $log" >&2
    grep -E 'ERROR|runtime error|SUMMARY|Test unit' "$log" >&2 || true
    exit 1
  fi
  echo "fuzz: $reader: $(sed -n 's/^stat::number_of_executed_units: *//p' "$log") ejecuciones, sin fallos"
done
