#!/usr/bin/env bash
# Uses the library as other projects would, outside of its tree: the package that the build in
# folder $1 installs (shared, Linux), a static one that is a part of another project, and one
# without a platform.
set -Eeuo pipefail
trap 'echo "failed: $BASH_COMMAND" >&2' ERR
cd "$(dirname "$0")/.."
project=$PWD

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/none" "$work/nothing"

step() { printf '  %s\n' "$*"; }
# quietly COMMAND...: shows what the command wrote only if it fails.
quietly() {
  "$@" >"$work/log" 2>&1 || { cat "$work/log"; return 1; }
}
# without_packages COMMAND...: runs it where pkg-config finds nothing.
without_packages() { PKG_CONFIG_LIBDIR=$work/nothing PKG_CONFIG_PATH='' "$@"; }
# expect WANTED GIVEN: fails unless the texts are equal.
expect() { [ "$1" = "$2" ] || { diff <(echo "$1") <(echo "$2"); return 1; }; }
# build FOLDER SOURCE OPTION...: configures and builds SOURCE in FOLDER.
build() {
  local folder=$1 source=$2
  shift 2
  quietly cmake -S "$source" -B "$folder" -G Ninja "$@"
  quietly cmake --build "$folder"
}

step "the installed package, moved: the tool, the names that it exports, a consumer"
quietly cmake --install "$1" --prefix "$work/first"
mv "$work/first" "$work/shared"
library=$(find "$work/shared" -name 'libMorveluneExtension.so')
# All of the output is read: a reader that stops early would make the writer fail.
strings "$library" | grep -xF '@(#)PROGRAM:MorveluneExtension  PROJECT:Morvelune-1' >/dev/null
scripts/check-exports.sh "$library" "$work/shared/include" >/dev/null
expect "  examples/media/photo.gif  public.jpeg  content" \
  "$(env -i "$work/shared/bin/morvelune" type examples/media/photo.gif)"
# The shared library needs none of its own libraries to be found.
without_packages build "$work/quickstart" examples/quickstart -DCMAKE_PREFIX_PATH="$work/shared"
greeting=$(sed -n '/^It prints$/,/^Build it/p' README.md | sed '1,/^```/d; /^```/,$d')
expect "$greeting" "$("$work/quickstart/quickstart")"

step "a part of another project, static and within a shared library"
build "$work/parent" tests/package/parent -DLIBRARY="$project" \
  -DCMAKE_INSTALL_PREFIX="$work/static"
grep -q 'own.cpp.*Wunused-variable' "$work/log"
grep -q 'extension/.*Waggregate-return' "$work/log"
expect d41d8cd98f00b204e9800998ecf8427e "$("$work/parent/parent")"

step "the static package: a consumer, and what looks for it in vain"
quietly cmake --install "$work/parent"
build "$work/quickstart-static" examples/quickstart -DCMAKE_PREFIX_PATH="$work/static"
expect "$greeting" "$("$work/quickstart-static/quickstart")"
quietly cmake -S tests/package/consumer -B "$work/found" -DEXPECTED=1 \
  -DCMAKE_PREFIX_PATH="$work/static"
without_packages quietly cmake -S tests/package/consumer -B "$work/not-found" -DEXPECTED=0 \
  -DCMAKE_PREFIX_PATH="$work/static"

step "no platform, in folders of its own: a host with its own services"
without_packages build "$work/none/build" . -DMORVELUNE_PLATFORM=none -DMORVELUNE_EXAMPLES=OFF \
  -DMORVELUNE_TESTS=OFF -DCMAKE_INSTALL_INCLUDEDIR=headers/own -DCMAKE_INSTALL_LIBDIR=lib/own
grep -qx 'CMAKE_BUILD_TYPE:STRING=Release' "$work/none/build/CMakeCache.txt"
quietly cmake --install "$work/none/build" --prefix "$work/none"
scripts/check-exports.sh "$work/none/lib/own/libMorveluneExtension.so" "$work/none/headers/own" \
  >/dev/null
[ ! -e "$work/none/headers/own/morvelune/platform/linux" ]
without_packages build "$work/host" examples/host \
  -DMorveluneExtension_DIR="$work/none/lib/own/cmake/MorveluneExtension"
expect "MorveluneExtension was built without a platform; call Platform::install() first
country: FR
log: //--// track url: https:/track.example/seen?c=FR
GET https:/track.example/seen?c=FR
GET https://media.example/photo.png
delivered: Summer sale
attachment: photo, public.png
posted: shown" "$("$work/host/host")"
# Beside the library itself, both need the compiler's own libraries only.
others=$(readelf --dynamic "$work/host/host" "$work/none/lib/own/libMorveluneExtension.so" |
  sed -n 's/.*(NEEDED).*\[\(.*\)\.so.*/\1/p' |
  grep -vE '^(lib(MorveluneExtension|stdc\+\+|gcc_s|m|c)|ld-linux.*)$' || true)
expect "" "$others"
