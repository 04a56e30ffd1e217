#!/usr/bin/env bash
# Installs what is missing, builds every way that must work, and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."

step() { printf '\n== %s\n' "$*"; }

# build PRESET: configures and builds, quietly unless it fails.
build() {
  local log
  log=$(mktemp)
  if ! { cmake --preset "$1" && cmake --build --preset "$1"; } >"$log" 2>&1; then
    cat "$log"
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}

step "packages"
scripts/install-deps.sh

step "format"
git ls-files '*.h' '*.cpp' '*.m' '*.mm' | xargs clang-format-14 --dry-run -Werror

step "address and undefined-behaviour sanitizers"
build asan
ctest --preset asan -j 2

step "thread sanitizer"
build tsan
ctest --preset tsan -j 2

step "clang and libc++"
build clang

step "the Objective-C face on GNUstep, with sanitizers"
build apple
ctest --preset apple -j 2

step "release, with the bounds of time and memory"
build release
ctest --preset release -j 1

step "the installed package"
scripts/test-package.sh build/release
