#!/usr/bin/env bash
# The Debian package: `cpack -G DEB` in the build directory makes one package whose Depends
# were computed by dpkg-shlibdeps and whose contents are the installed layout under /usr; its
# program runs from the unpacked tree.
#   PackageTest.sh BUILD_DIR SANITIZE
# Exit status 77 (skipped) in a sanitizer build, as for the installed tree.
set -euo pipefail
build=$1 sanitize=$2
if [[ $sanitize == ON ]]; then
  echo "skipped: the package is checked in the build without sanitizers"
  exit 77
fi

failures=0
fail() {
  echo "FAILED: $*" >&2
  failures=$((failures + 1))
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
(cd "$build" && cpack -G DEB -B "$work" --config CPackConfig.cmake >"$work/cpack.log") ||
  { cat "$work/cpack.log" >&2; exit 1; }
packages=("$work"/*.deb)
if [[ ${#packages[@]} -ne 1 || ! -f ${packages[0]} ]]; then
  echo "FAILED: cpack made ${#packages[@]} packages: ${packages[*]}" >&2
  exit 1
fi
deb=${packages[0]}
version=$(dpkg-deb --field "$deb" Version)

# Depends: the runtime packages of the libraries that the programs and libraries link, each
# with the version that dpkg-shlibdeps derived; none of the development packages.
depends=$(dpkg-deb --field "$deb" Depends)
for library in libc6 libstdc++6 libcairo2 liblcms2-2 libicu72 libheif1 libspng0; do
  [[ ", $depends," == *", $library ("* ]] || fail "Depends names no $library with a version: $depends"
done
[[ $depends != *-dev* ]] || fail "Depends names a development package: $depends"

# Contents: the installed layout under /usr.
dpkg-deb --contents "$deb" | awk '{ print $6 }' >"$work/contents"
expected=(
  ./usr/bin/wrighttool
  "./usr/lib/iconwright/IconwrightFoundation.framework/libIconwrightFoundation.so.$version"
  "./usr/lib/iconwright/IconwrightFoundation.framework/libIconwrightFoundation.so.${version%%.*}"
  ./usr/include/iconwright/foundation/tool/ToolCommand.hpp
  ./usr/include/iconwright/foundation/document/IconComposition.hpp
  ./usr/lib/pkgconfig/iconwright-foundation.pc
  ./usr/lib/cmake/IconwrightFoundation/IconwrightFoundationConfig.cmake
  ./usr/share/man/man1/wrighttool.1
  ./usr/share/bash-completion/completions/wrighttool
  ./usr/share/doc/iconwright/README.md
  ./usr/share/doc/iconwright/examples/embed/main.cpp
)
if [[ -d $build/IconwrightKit.framework ]]; then
  expected+=(./usr/lib/iconwright/IconwrightKit.framework/libIconwrightKit.so)
fi
for path in "${expected[@]}"; do
  grep -qxF "$path" "$work/contents" || fail "the package holds no $path"
done

# The unpacked program finds its library and prints the package's version.
dpkg-deb --extract "$deb" "$work/root"
printed=$(env -u DYLD_FRAMEWORK_PATH "$work/root/usr/bin/wrighttool" --version)
[[ $printed == "wrighttool $version" ]] || fail "the packaged wrighttool --version prints \"$printed\", not version $version"

if ((failures > 0)); then
  echo "$failures check(s) failed" >&2
  exit 1
fi
echo "$(basename "$deb"): Depends: $depends"
