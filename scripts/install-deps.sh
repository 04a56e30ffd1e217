#!/usr/bin/env bash
# Installs the Debian packages that building and testing need, if any is missing.
set -euo pipefail

packages=(
  g++ cmake ninja-build pkg-config git binutils
  libcurl4-openssl-dev libicu-dev libssl-dev
  nlohmann-json3-dev libcli11-dev libcpp-httplib-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  clang-14 clang-format-14 clang-tidy-14 libclang-rt-14-dev libc++-14-dev libc++abi-14-dev
  libgnustep-base-dev gnustep-make libobjc-12-dev libblocksruntime-dev
)

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
