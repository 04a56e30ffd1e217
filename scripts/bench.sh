#!/usr/bin/env bash
# Measures the library and the tool beside their peers, all in this run, and prints one table that
# says which limits are held. Leaves the table and the curves in build/bench; with --docs, also in
# docs. Takes less than ten minutes.
set -euo pipefail
cd "$(dirname "$0")/.."

log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { scripts/install-deps.sh --peers && cmake --preset release &&
  cmake --build --preset release --target MorveluneExtension morvelune library_benchmark measure parse_lines &&
  cmake -S . -B build/none -G Ninja -DMORVELUNE_PLATFORM=none -DCMAKE_BUILD_TYPE=Release \
    -DMORVELUNE_EXAMPLES=OFF -DMORVELUNE_TESTS=OFF && cmake --build build/none; } >"$log" 2>&1; then
  cat "$log" >&2
  exit 1
fi
python3 scripts/bench.py "$@"
