#!/bin/sh
# Runs the SVG benchmarks and prints the compound path of the largest corpus SVG against
# drawing it, as a ratio (target: at most 0.25).
#   bench/compare_svg.sh [build directory, default: build] [extra Google Benchmark options...]
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build}
[ $# -gt 0 ] && shift
program=$build/bench/bench_svg
if [ ! -x "$program" ]; then
  echo "error: $program is missing; build the target bench_svg first" >&2
  exit 1
fi
results=$(mktemp)
log=$(mktemp)
trap 'rm -f "$results" "$log"' EXIT
if ! "$program" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true \
  --benchmark_out="$results" --benchmark_out_format=json "$@" >/dev/null 2>"$log"; then
  cat "$log" >&2
  exit 1
fi
python3 - "$results" <<'PYTHON'
import json, sys

runs = json.load(open(sys.argv[1]))
scale = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}
median = {run["run_name"].replace("/process_time", ""): run["cpu_time"] * scale[run["time_unit"]]
          for run in runs["benchmarks"] if run.get("aggregate_name") == "median"}

def show(label, ours, other):
    if ours not in median or other not in median:
        print(f"{label:<44} (not measured)")
        return
    print(f"{label:<44} {median[ours]:>10.2f} {median[other]:>10.2f} {median[ours] / median[other]:>7.2f}")

print(f"{'ours against the render (median ms)':<44} {'ours':>10} {'other':>10} {'ratio':>7}")
show("compound path / render, 1.bg.svg", "compoundPathOfLargestSVG", "renderLargestSVG")
show("parse / render, 1.bg.svg", "parseLargestSVG", "renderLargestSVG")
PYTHON
