#!/usr/bin/env bash
# Installs what is missing, builds every way that must work, and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."

step() { printf '\n== %s\n' "$*"; }

# quietly COMMAND...: shows what the command wrote only if it fails.
quietly() {
  local log
  log=$(mktemp)
  if ! "$@" >"$log" 2>&1; then
    cat "$log"
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}

# build PRESET: configures and builds.
build() { quietly cmake --preset "$1" && quietly cmake --build --preset "$1"; }

# tidy: checks the sources of the library and the tool as the preset clang compiles them.
tidy() {
  git ls-files {detection,extension,payload,platform,tools,util}/'*.cpp' ':!platform/none' |
    xargs -P "$(nproc)" -n 1 clang-tidy-14 -p build/clang --quiet
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

step "clang and libc++, and clang-tidy"
build clang
quietly tidy

step "a newer clang"
build clang-19

step "the Objective-C face on GNUstep, with and without reference counting, with sanitizers"
build apple
ctest --preset apple -j 2

step "the packages for iOS, and Swift's view of the examples"
if command -v swift >/dev/null; then
  scripts/test-swift.sh
else
  echo "not run: Swift is not found"
fi

step "release, with the bounds of time and memory"
build release
ctest --preset release -j 1

step "the installed package"
scripts/test-package.sh build/release
