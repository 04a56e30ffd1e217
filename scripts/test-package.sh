#!/usr/bin/env bash
# Installs the build in folder $1 to a temporary prefix and uses it as another project would.
set -euo pipefail
cd "$(dirname "$0")/.."

prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$1" --prefix "$prefix" >/dev/null

library=$(find "$prefix" -name 'libMorveluneExtension.so')
strings "$library" | grep -qxF '@(#)PROGRAM:MorveluneExtension  PROJECT:Morvelune-1'
echo "version string found in the shared library"

cmake -S examples/quickstart -B "$prefix/build" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$prefix/build" >/dev/null
"$prefix/build/quickstart"
