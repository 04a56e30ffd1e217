#!/usr/bin/env bash
# Installs the build in folder $1 to a temporary prefix and uses it as another project would.
set -euo pipefail
cd "$(dirname "$0")/.."

prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$1" --prefix "$prefix" >/dev/null

library=$(find "$prefix" -name 'libMorveluneExtension.so')
# All of the output is read: a reader that stops early would make the writer fail.
strings "$library" | grep -xF '@(#)PROGRAM:MorveluneExtension  PROJECT:Morvelune-1' >/dev/null
echo "version string found in the shared library"

cmake -S examples/quickstart -B "$prefix/build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$prefix/build" >/dev/null
"$prefix/build/quickstart"
