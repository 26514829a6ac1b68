#!/usr/bin/env bash
# Sets the machine up, builds everything and runs the whole test suite.
#   scripts/test.sh              the normal build, in build/
#   scripts/test.sh --sanitize   the same under AddressSanitizer and UBSan, in build-asan/
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh"
if [ "${1:-}" = "--sanitize" ]; then
  build=$root/build-asan
  export LSAN_OPTIONS="suppressions=$root/tests/sanitizers/lsan.supp:print_suppressions=0"
  "$root/scripts/build.sh" "$build" -DICONWRIGHT_SANITIZE=ON -DICONWRIGHT_BENCHMARKS=OFF
else
  build=$root/build
  "$root/scripts/build.sh" "$build"
fi
cd "$build"
ctest --output-on-failure -j "$(nproc)"
