#!/bin/sh
# Runs the hit mask benchmarks, and the document command benchmarks when built, and prints
# each of our figures against its floor or peer, as a ratio (below 1: faster than the floor or
# peer).
#   bench/compare.sh [build directory, default: build] [extra Google Benchmark options...]
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build}
[ $# -gt 0 ] && shift
program=$build/bench/bench_hitmask
if [ ! -x "$program" ]; then
  echo "error: $program is missing; build the target bench_hitmask first" >&2
  exit 1
fi
results=$(mktemp)
documents=$(mktemp)
log=$(mktemp)
trap 'rm -f "$results" "$documents" "$log"' EXIT
if ! "$program" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true \
  --benchmark_out="$results" --benchmark_out_format=json "$@" >/dev/null 2>"$log"; then
  cat "$log" >&2
  exit 1
fi
echo '{"benchmarks": []}' >"$documents"
if [ -x "$build/bench/bench_geometry" ]; then
  if ! "$build/bench/bench_geometry" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true \
    --benchmark_out="$documents" --benchmark_out_format=json "$@" >/dev/null 2>"$log"; then
    cat "$log" >&2
    exit 1
  fi
fi
python3 - "$results" "$documents" <<'PYTHON'
import json, sys

runs = [run for path in sys.argv[1:] for run in json.load(open(path))["benchmarks"]]
scale = {"ns": 1e-3, "us": 1.0, "ms": 1e3, "s": 1e6}
median = {}
for run in runs:
    if run.get("aggregate_name") != "median":
        continue
    name = run["run_name"].replace("/manual_time", "")
    # Processor time in-process; for the programs we start, the manual time is their
    # processor time (user + system of the child).
    key = "real_time" if run["run_name"].endswith("/manual_time") else "cpu_time"
    median[name] = run[key] * scale[run["time_unit"]]

def show(label, ours, other, subtract=None):
    if ours not in median or other not in median:
        print(f"{label:<44} (not measured)")
        return
    theirs = median[other] - (median[subtract] if subtract else 0)
    print(f"{label:<44} {median[ours]:>10.1f} {theirs:>10.1f} {median[ours] / theirs:>7.2f}")

print(f"{'ours against floor or peer (median µs)':<44} {'ours':>10} {'other':>10} {'ratio':>7}")
show("decode PNG / spng decode alone", "decodePNG", "floorSpngDecodeAlone")
show("hit mask from image / copy image pixels", "buildHitMask", "floorCopyImagePixels")
show("visual bounds / read mask once", "visualBounds", "floorScanMaskOnce")
show("trace outlines / potrace process", "traceOutlines", "peerPotrace")
show("trace, smooth, judge / potrace process", "traceSmoothAndJudge", "peerPotrace")
show("trace, smooth, judge / potrace minus start", "traceSmoothAndJudge", "peerPotrace",
     "floorProcessStart")
show("build quadtree / read mask once", "buildQuadtree", "floorScanMaskOnce")
show("10k small queries / scan per query", "quadtreeQueries/small", "floorScanPerQuery/small")
show("10k large queries / scan per query", "quadtreeQueries/large", "floorScanPerQuery/large")
show("--inspect / --upgrade, 40 layers (process)", "inspectCommand", "upgradeCommand")
PYTHON
