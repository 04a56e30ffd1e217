#!/usr/bin/env bash
# Installs the Debian packages that building and testing need, if any is missing; with --peers also
# those that scripts/bench.sh measures beside the library.
set -euo pipefail

packages=(
  # Everything; a library without a platform needs no more.
  g++ cmake ninja-build git
  # The Linux platform.
  pkg-config libcurl4-openssl-dev libicu-dev libssl-dev
  # The tool and the examples.
  nlohmann-json3-dev libcli11-dev libcpp-httplib-dev
  # The tests and benchmarks.
  libgtest-dev libgmock-dev libbenchmark-dev binutils locales openssl python3
  # The other compilers, and what checks the sources.
  clang-14 libclang-rt-14-dev libc++-14-dev libc++abi-14-dev clang-19 clang-format-14 clang-tidy-14
  # The Objective-C face.
  libgnustep-base-dev gnustep-make libobjc-12-dev libblocksruntime-dev
)
[ "${1:-}" = --peers ] && packages+=(nginx-light curl jq libmagic-dev)

missing=()
for package in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
  [ "$status" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
echo "Installing: ${missing[*]}" >&2
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
