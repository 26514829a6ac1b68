#!/bin/sh
# Runs the hit mask, asset and document command benchmarks and prints each of our figures against its floor or
# peer, as a ratio (below 1: faster than the floor or peer). The asset benchmarks need the corpus
# in ../shared; without it they are reported as not measured.
#   bench/compare.sh [build directory, default: build] [extra Google Benchmark options...]
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build}
[ $# -gt 0 ] && shift
results=$(mktemp -d)
log=$(mktemp)
trap 'rm -rf "$results" "$log"' EXIT
for name in bench_hitmask bench_assets bench_geometry; do
  program=$build/bench/$name
  if [ ! -x "$program" ]; then
    echo "error: $program is missing; build the target $name first" >&2
    exit 1
  fi
  if ! "$program" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true \
    --benchmark_out="$results/$name.json" --benchmark_out_format=json "$@" >/dev/null 2>"$log"; then
    echo "$name did not run:" >&2
    cat "$log" >&2
    rm -f "$results/$name.json"
  fi
done
python3 - "$results" <<'PYTHON'
import glob, json, os, sys

runs = {"benchmarks": []}
for path in sorted(glob.glob(os.path.join(sys.argv[1], "*.json"))):
    runs["benchmarks"] += json.load(open(path))["benchmarks"]
scale = {"ns": 1e-3, "us": 1.0, "ms": 1e3, "s": 1e6}
median = {}
for run in runs["benchmarks"]:
    if run.get("aggregate_name") != "median":
        continue
    name = run["run_name"].replace("/manual_time", "").replace("/process_time", "")
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
show("SVG render / rsvg-convert process", "svgRender", "peerRsvgConvert")
show("SVG render / rsvg-convert minus start", "svgRender", "peerRsvgConvert", "floorProcessStart")
show("SVG hit mask / SVG render", "svgHitMask", "svgRender")
show("SVG compound path / SVG render", "svgCompoundPath", "svgRender")
show("PNG 64-pt thumbnail / vipsthumbnail process", "pngThumbnail64", "peerVipsthumbnail")
show("PNG 64-pt thumbnail / vipsthumbnail minus start", "pngThumbnail64", "peerVipsthumbnail", "floorProcessStart")
show("PNG stroke highlight / potrace process", "pngStrokeHighlight", "peerPotraceOnMask")
show("PNG stroke highlight / potrace minus start", "pngStrokeHighlight", "peerPotraceOnMask", "floorProcessStart")
show("--inspect / --upgrade, 40 bitmap layers (process)", "inspectCommand", "upgradeCommand")
show("--inspect / --upgrade, 40 corpus vector layers (process)", "inspectVectorsCommand", "upgradeVectorsCommand")
PYTHON
