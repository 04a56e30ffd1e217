#!/usr/bin/env bash
# Installs what is missing, builds the tool and the example origin, and delivers the example push
# from that origin.
set -euo pipefail
cd "$(dirname "$0")/.."

log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { scripts/install-deps.sh && cmake --preset release &&
  cmake --build --preset release --target morvelune origin; } >"$log" 2>&1; then
  cat "$log" >&2
  exit 1
fi

# The origin prints its address, then what reaches its tracking address.
coproc ORIGIN { exec build/release/examples/origin examples/media; }
origin=$ORIGIN_PID
trap 'rm -f "$log"; kill "$origin" 2>/dev/null || true' EXIT
read -r -t 10 address <&"${ORIGIN[0]}"

sed "s|http://origin.example|$address|" examples/push.json |
  build/release/tools/morvelune/morvelune deliver --strict --country FR --languages fr-FR,en \
    --screen 375x812 --orientation portrait --idfv 5D0B6B52-6C6B-4E0B-9A5E-2F6D0C1A7B3E -

printf '\nThe tracking server saw\n'
read -r -t 10 request <&"${ORIGIN[0]}"
printf '  %s\n' "$request"
