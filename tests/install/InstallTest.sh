#!/usr/bin/env bash
# The installed tree, away from the build: installs into a temporary prefix, moves the prefix
# elsewhere, and there runs wrighttool, finds the Kit beside the Foundation framework, checks
# that the headers need nothing the package does not declare, builds and runs the embedding
# example with CMake and with pkg-config, renders the manual page and loads the completion.
#   InstallTest.sh BUILD_DIR SOURCE_DIR TEST_KIT_LIBRARY SANITIZE
# Exit status 77 (skipped) in a sanitizer build, whose installed programs would need the
# sanitizer runtime in every program built against them.
set -euo pipefail
build=$1 source=$2 test_kit=$3 sanitize=$4
if [[ $sanitize == ON ]]; then
  echo "skipped: the installed tree is checked in the build without sanitizers"
  exit 77
fi
shared=${ICONWRIGHT_SHARED_DIR:-$source/../shared}

failures=0
fail() {
  echo "FAILED: $*" >&2
  failures=$((failures + 1))
}
# expect_equal LABEL EXPECTED ACTUAL
expect_equal() {
  if [[ $2 != "$3" ]]; then
    fail "$1"
    diff <(printf '%s\n' "$2") <(printf '%s\n' "$3") >&2 || true
  fi
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
unset DYLD_FRAMEWORK_PATH

cmake --install "$build" --prefix "$work/staging" >"$work/install.log"
mkdir -p "$work/moved/elsewhere"
mv "$work/staging" "$work/moved/elsewhere/prefix"
prefix=$work/moved/elsewhere/prefix
tool=$prefix/bin/wrighttool
frameworks=$prefix/lib/iconwright

# The program finds the moved library through its relative run path, and no text file of the
# tree names the build or source directory.
resolved=$(ldd "$tool" | awk '/libIconwrightFoundation/ {print $3}')
expect_equal "wrighttool loads the moved library" \
  "$(realpath "$frameworks/IconwrightFoundation.framework/libIconwrightFoundation.so.0")" "$(realpath "$resolved")"
if stale=$(grep -rIl -e "$build" -e "$source" "$prefix"); then
  fail "installed files name the build or source directory: $stale"
fi

# --help and --version answer as the build's program does.
help=$("$tool" --help)
expect_equal "--help of the installed program" "$("$build/wrighttool" --help)" "$help"
commands=$(sed -n 's/^  --\([a-z0-9-]*\)\( .*\)\{0,1\}$/\1/p' <<<"$help")
[[ $commands == *upgrade* ]] || fail "--help lists no --upgrade: $help"
version=$("$tool" --version)
[[ $version =~ ^wrighttool\ [0-9]+\.[0-9]+\.[0-9]+$ ]] || fail "--version prints \"$version\""
expect_equal "--version agrees with the pkg-config package" "wrighttool $(PKG_CONFIG_PATH=$prefix/lib/pkgconfig pkg-config --modversion iconwright-foundation)" "$version"

# --upgrade on a real document, written where asked and equal to what the build's program writes.
corpus_package=$shared/corpus/packages/01
if [[ -d $corpus_package ]]; then
  cp -r "$corpus_package" "$work/Corpus.icon"
  "$tool" "$work/Corpus.icon" --upgrade --output-file "$work/upgraded/Installed.icon"
  "$build/wrighttool" "$work/Corpus.icon" --upgrade --output-file "$work/upgraded/Built.icon"
  diff -r "$work/upgraded/Built.icon" "$work/upgraded/Installed.icon" >&2 || fail "--upgrade output differs from the build's"
  diff -r "$corpus_package" "$work/Corpus.icon" >/dev/null || fail "--upgrade changed its input"
else
  echo "skipped --upgrade on a corpus package: $corpus_package is absent"
fi

# The Kit is looked for beside the moved Foundation framework. Without a Kit of its own, the
# tree gets the test plugin there; a missing Kit stops the program naming that place.
if [[ ! -d $frameworks/IconwrightKit.framework ]]; then
  set +e
  missing=$("$tool" --fixture-greet --name Installed 2>&1)
  set -e
  [[ $missing == *"Could not find it in: “$frameworks/IconwrightKit.framework”"* ]] ||
    fail "a missing Kit is reported with its place beside the Foundation framework: $missing"
  mkdir "$frameworks/IconwrightKit.framework"
  cp "$test_kit" "$frameworks/IconwrightKit.framework/libIconwrightKit.so"
  expect_equal "a command of the Kit found beside the Foundation framework" \
    $'{\n  "greeting" : "Hello, Installed"\n}' "$("$tool" --fixture-greet --name Installed)"
  rm -r "$frameworks/IconwrightKit.framework"
fi

# The headers compile with only what the package declares, and include nothing but their own
# and the C and C++ standard libraries.
export PKG_CONFIG_PATH=$prefix/lib/pkgconfig
read -r -a cflags <<<"$(pkg-config --cflags iconwright-foundation)"
(cd "$prefix/include/iconwright" && find foundation -name '*.hpp' | sort | sed 's/.*/#include "&"/') >"$work/AllHeaders.cpp"
c++ -std=c++20 -fsyntax-only -Wall -Wextra -Wpedantic -Werror "${cflags[@]}" "$work/AllHeaders.cpp" || fail "the installed headers do not compile"
c++ -std=c++20 -M "${cflags[@]}" "$work/AllHeaders.cpp" | tr ' \\' '\n\n' | sed '/^$/d; /:$/d; /AllHeaders.cpp$/d' |
  xargs -r realpath | sort -u | grep -v "^$(realpath "$prefix")/" >"$work/foreign-headers" || true
if command -v dpkg >/dev/null; then
  # "package[:arch][, package...]: path" for each header a package holds.
  xargs -r dpkg -S <"$work/foreign-headers" 2>/dev/null | sed 's/: \//\t\//' >"$work/header-owners" || true
  while read -r header; do
    owner=$(awk -F '\t' -v h="$header" '$2 == h { print $1; exit }' "$work/header-owners" | sed 's/:[a-z0-9]*//g')
    [[ $owner =~ ^(libc6-dev|libstdc\+\+-[0-9]+-dev|linux-libc-dev|libgcc-[0-9]+-dev)$ ]] ||
      fail "an installed header includes $header (${owner:-no package}), which the package does not declare"
  done <"$work/foreign-headers"
fi

# The embedding example, copied from the installed documents, built both ways and run.
example_output="$source/examples/Example.icon: 1 group
on iOS:
group 1: Badge
  layer 1: Badge
    image: Badge.svg
    image size: 1024 x 1024
    visual frame: (192, 192, 640 x 640)
the centre hits: Badge"
cp -r "$prefix/share/doc/iconwright/examples/embed" "$work/embed-cmake"
cp -r "$prefix/share/doc/iconwright/examples/embed" "$work/embed-make"
cmake -S "$work/embed-cmake" -B "$work/embed-cmake/build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >"$work/embed.log"
cmake --build "$work/embed-cmake/build" >>"$work/embed.log"
expect_equal "example built with find_package" "$example_output" \
  "$("$work/embed-cmake/build/embed-example" "$source/examples/Example.icon")"
make -s -C "$work/embed-make" >>"$work/embed.log"
expect_equal "example built with pkg-config" "$example_output" \
  "$("$work/embed-make/embed-example" "$source/examples/Example.icon")"
if [[ -d $corpus_package ]]; then
  "$work/embed-make/embed-example" "$corpus_package" >/dev/null || fail "the example does not read $corpus_package"
fi

# The manual page renders without a warning and describes exactly the commands there are.
page=$prefix/share/man/man1/wrighttool.1
warnings=$(groff -man -ww -z -Tutf8 "$page" 2>&1)
expect_equal "groff warnings" "" "$warnings"
warnings=$(MANWIDTH=80 MAN_KEEP_FORMATTING= man --warnings -l "$page" 2>&1 >/dev/null)
expect_equal "man warnings" "" "$warnings"
# Each entry of COMMANDS opens, after a blank line, with its command line; the first "--word"
# there is the command.
documented=$(groff -man -Tascii -P-cbou "$page" 2>/dev/null | awk '
  /^COMMANDS/ { inside = 1; blank = 1; next }
  /^[A-Z]/ { inside = 0 }
  inside && blank && match($0, /--[a-z0-9-]+/) { print substr($0, RSTART + 2, RLENGTH - 2) }
  { blank = ($0 == "") }' | sort)
expect_equal "commands described by the manual page (add wrighttool/man/NAME.man or kit/man/NAME.man)" \
  "$(printf '%s\n' $commands help version | sort)" "$documented"

# The completion script loads in bash and completes commands, arguments and values.
completion=$prefix/share/bash-completion/completions/wrighttool
complete_line() {
  bash --norc --noprofile -c '
    source "$1"; shift
    COMP_WORDS=("$@"); COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    _wrighttool
    printf "%s\n" "${COMPREPLY[@]}"' completion "$completion" "$@"
}
expect_equal "completion is registered" "complete -F _wrighttool wrighttool" \
  "$(bash --norc --noprofile -c 'source "$1" && complete -p wrighttool' completion "$completion")"
expect_equal "completed commands" "$(printf -- '--%s\n' $commands)" "$(complete_line wrighttool doc.icon --)"
expect_equal "completed command" "--upgrade" "$(complete_line wrighttool doc.icon --up)"
expect_equal "completed argument" "--output-file" "$(complete_line wrighttool doc.icon --upgrade --o)"
expect_equal "an argument given once is not offered again" "" \
  "$(complete_line wrighttool doc.icon --upgrade --output-file New.icon --)"
expect_equal "a value is not completed as an argument" "" "$(complete_line wrighttool --evaluate --expression --)"
expect_equal "platform values" "macOS" \
  "$(bash --norc --noprofile -c 'source "$1"; _wrighttool_values platform m; printf "%s\n" "${COMPREPLY[@]}"' c "$completion")"
expect_equal "rendition values" $'TintedLight\nTintedDark' \
  "$(bash --norc --noprofile -c 'source "$1"; _wrighttool_values rendition Tint; printf "%s\n" "${COMPREPLY[@]}"' c "$completion")"

if ((failures > 0)); then
  echo "$failures check(s) failed" >&2
  exit 1
fi
echo "the installed tree works from $prefix"
