#!/usr/bin/env bash
# Sets the machine up, builds wrighttool and its renderer plugin, and runs the main job on the
# example document in examples/: Example.icon is rendered to a PNG for every platform and
# rendition it has, and to a contact sheet, all in build/example/. The upgraded manifest is
# printed as well.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh"
"$root/scripts/build.sh" "$root/build"
tool=$root/build/wrighttool
out=$root/build/example
mkdir -p "$out"

echo "\$ wrighttool examples/Example.icon --export-renditions --output-directory build/example"
"$tool" "$root/examples/Example.icon" --export-renditions --output-directory "$out"
echo "\$ wrighttool examples/Example.icon --export-contact-sheet --output-file build/example/ContactSheet.png"
"$tool" "$root/examples/Example.icon" --export-contact-sheet --output-file "$out/ContactSheet.png"
echo "\$ wrighttool examples/Example.icon --upgrade --output-file build/example/Example.icon"
"$tool" "$root/examples/Example.icon" --upgrade --output-file "$out/Example.icon"
cat "$out/Example.icon/icon.json"
echo
echo
echo "Done. Look at build/example/ContactSheet.png for every platform and rendition at a glance,"
echo "and at build/example/<platform>-<rendition>.png for each image at full size."
