#!/usr/bin/env bash
# Installs every Debian package the build, the tests and the benchmarks need.
# Idempotent: when everything is present it does nothing and prints nothing.
set -euo pipefail

packages=(
  g++ make cmake ninja-build pkg-config ccache
  librsvg2-dev libcairo2-dev libpugixml-dev
  libspng-dev libdeflate-dev libturbojpeg0-dev libjpeg62-turbo-dev libwebp-dev libtiff-dev libgif-dev libheif-dev
  liblcms2-dev libicu-dev nlohmann-json3-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  fonts-dejavu-core potrace librsvg2-bin libvips-tools
  dpkg-dev file man-db groff-base
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "ok installed"; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
