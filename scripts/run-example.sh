#!/usr/bin/env bash
# Sets the machine up, builds wrighttool and runs it on the example document in examples/:
# the hand-written Example.icon is brought to the current format and written to
# build/example/Example.icon, whose manifest is printed.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh"
"$root/scripts/build.sh" "$root/build"
tool=$root/build/wrighttool
output=$root/build/example/Example.icon
echo "\$ wrighttool examples/Example.icon --upgrade --output-file build/example/Example.icon"
"$tool" "$root/examples/Example.icon" --upgrade --output-file "$output"
cat "$output/icon.json"
echo
expression=$(cat "$root/examples/expression.txt")
echo "\$ wrighttool --evaluate --expression \"$expression\""
"$tool" --evaluate --expression "$expression"
