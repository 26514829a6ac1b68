#!/usr/bin/env bash
# Configures and builds the project with Ninja (and ccache when present).
#   scripts/build.sh [build-directory] [extra CMake arguments...]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build}
shift || true
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
ninja -C "$build" --quiet 2>/dev/null || ninja -C "$build"
