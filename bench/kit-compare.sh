#!/bin/sh
# Runs the renderer plugin's benchmarks and prints each figure against its peer as a ratio,
# with the peak memory of one 1024 × 1024 export.
#   bench/kit-compare.sh [build directory, default: build] [extra Google Benchmark options...]
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build}
[ $# -gt 0 ] && shift
program=$build/bench/bench_kit
if [ ! -x "$program" ]; then
  echo "error: $program is missing; build the target bench_kit first" >&2
  exit 1
fi
results=$(mktemp)
trap 'rm -f "$results"' EXIT
"$program" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true \
  --benchmark_out="$results" --benchmark_out_format=json "$@" >/dev/null
python3 - "$results" <<'PYTHON'
import json, sys

runs = json.load(open(sys.argv[1]))
scale = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}
median, peak = {}, {}
for run in runs["benchmarks"]:
    if run.get("aggregate_name") != "median":
        continue
    name = run["run_name"].replace("/manual_time", "")
    median[name] = run["real_time"] * scale[run["time_unit"]]
    peak[name] = run.get("peak_MiB", 0)

def show(label, ours, other, limit):
    if ours not in median or other not in median:
        print(f"{label:<48} (not measured)")
        return
    ratio = median[ours] / median[other]
    print(f"{label:<48} {median[ours]:>9.1f} {median[other]:>9.1f} {ratio:>7.2f}  (at most {limit})")

print(f"{'ours against peer (median ms of processor time)':<48} {'ours':>9} {'peer':>9} {'ratio':>7}")
show("export-image corpus 01 / rsvg-convert largest", "exportImageCorpus01", "peerRsvgConvert", 1.5)
show("contact sheet of 18 images / one export-image", "exportContactSheet18", "exportImage18", 8)
if "exportImageCorpus01" in peak:
    print(f"{'peak memory of one 1024² export (MiB)':<48} {peak['exportImageCorpus01']:>9.1f}  (at most 200)")
PYTHON
