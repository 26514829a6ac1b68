#!/usr/bin/env bash
# Runs fuzz targets one after another, each until a million executions or 30 minutes,
# whichever comes first, one job at a time; prints one table row per target.
#   fuzz/run-long.sh BUILD_DIR WORK_DIR [TARGET...]     (default: every target)
# Each target fuzzes in WORK_DIR/<name>/ from a corpus of its own there plus the repository's
# seeds, which stay as they are; crashing inputs land in WORK_DIR/<name>/ as crash-*.
set -uo pipefail
here=$(cd "$(dirname "$0")" && pwd)
build=$(cd "${1:?build directory of a clang fuzz build}" && pwd)
work=$(mkdir -p "${2:?work directory}" && cd "$2" && pwd)
shift 2
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(arithmetic color values json arguments manifest pasteboard svg image package)
runs=${FUZZ_RUNS:-1000000}
seconds=${FUZZ_SECONDS:-1800}

for name in "${targets[@]}"; do
  program=$build/fuzz/fuzz_$name
  [ -x "$program" ] || { echo "| \`fuzz_$name\` | not built | | | |"; continue; }
  mkdir -p "$work/$name/corpus"
  log=$work/$name/run.log
  start=$(date +%s)
  (cd "$work/$name" && "$program" -runs="$runs" -max_total_time="$seconds" -timeout="${FUZZ_TIMEOUT:-10}" \
     -rss_limit_mb=2560 -print_final_stats=1 corpus "$here/corpus/$name" >"$log" 2>&1)
  status=$?
  elapsed=$(( $(date +%s) - start ))
  executions=$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$log" | tail -1 | grep -o '[0-9]*$')
  crashes=$(find "$work/$name" -maxdepth 1 -name 'crash-*' -o -maxdepth 1 -name 'leak-*' -o -maxdepth 1 -name 'timeout-*' -o -maxdepth 1 -name 'oom-*' | wc -l)
  rate=$(( ${executions:-0} / (elapsed > 0 ? elapsed : 1) ))
  echo "| \`fuzz_$name\` | ${executions:-?} | $(( elapsed / 60 )) min $(( elapsed % 60 )) s | $rate | exit $status, $crashes saved inputs |"
done
