#!/usr/bin/env bash
# Sets the machine up, builds wrighttool and runs it on the example shipped in examples/.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh"
"$root/scripts/build.sh" "$root/build"
tool=$root/build/wrighttool
expression=$(cat "$root/examples/expression.txt")
echo "\$ wrighttool --evaluate --expression \"$expression\""
"$tool" --evaluate --expression "$expression"
