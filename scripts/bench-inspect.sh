#!/usr/bin/env bash
# Measures "inspect --jsonl" on $1 payloads (by default 1000000) of about 1 KB: speed and peak
# memory.
set -euo pipefail
cd "$(dirname "$0")/.."
count=${1:-1000000}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
if ! { cmake --preset release && cmake --build --preset release --target morvelune; } \
  >"$work/log" 2>&1; then
  cat "$work/log" >&2
  exit 1
fi

# Varied: one to three attachments, every third payload with plain http, now and then an unknown
# extension, a tag that nothing fills, no body, or a line that is no JSON.
awk -v count="$count" 'BEGIN {
  srand(1)
  split("png jpg gif mp3 mp4 JPG webp", extensions, " ")
  for (i = 1; i <= count; ++i) {
    if (i % 1000 == 0) { print "{ \"broken\": " i; continue }
    printf "{\"aps\":{\"alert\":{\"title\":\"Offer %d\",\"body\":\"%s\"},\"mutable-content\":1},", i,
      i % 50 ? "Look, listen and see what is new in the shop around the corner." : ""
    printf "\"k2tid\":\"%d\",\"promo\":\"spring-%d\",\"level\":%d,", i, rand() * 1000, rand() * 9
    printf "\"mvl-tk\":{\"url\":\"https://track.example/v1\",\"display\":\"seen?u=|uid|&d=|idfv|&s=|s|&p=%s\",", \
      i % 20 ? "|push|" : "%7Cpull%7C"
    printf "\"dismiss\":\"gone?u=|uid|&p=|push|\",\"params\":{\"uid\":\"u-%d\",\"push\":%d}},\"mvl-atts\":[", \
      rand() * 1000000, i
    attachments = 1 + int(rand() * 3)
    for (a = 1; a <= attachments; ++a)
      printf "%s{\"att-id\":\"picture-%d\",\"att-url\":\"%s://cdn.example/media/%d/%d/file.%s\"}", \
        (a > 1 ? "," : ""), a, i % 3 ? "https" : "http", rand() * 100000, i, \
        extensions[1 + int(rand() * 7)]
    printf "],\"k2tb\":[{\"bid\":\"buy\",\"ccp\":{\"sku\":\"%d\"},\"delay-dismiss\":true},{\"bid\":\"later\"}],", i
    printf "\"note\":\"%0*d\"}\n", 560 - 75 * attachments, i
  }
}' >"$work/payloads"

bytes=$(wc -c <"$work/payloads")
mkfifo "$work/answers"
wc -l <"$work/answers" >"$work/count" &
counter=$!
start=$(date +%s%N)
build/release/tools/morvelune/morvelune inspect --jsonl <"$work/payloads" >"$work/answers" &
tool=$!
# The kernel keeps the process's peak; the last look before it ends stands for it.
peak=0
while now=$(sed -n 's/^VmHWM:[^0-9]*\([0-9]*\).*/\1/p' "/proc/$tool/status" 2>/dev/null); do
  [ -n "$now" ] || break
  peak=$now
  sleep 0.05
done
status=0
wait "$tool" || status=$?
end=$(date +%s%N)

# 1: broken lines, which are there on purpose; 3: errors found.
[ "$status" -le 1 ] || [ "$status" -eq 3 ]
wait "$counter"
[ "$(cat "$work/count")" -eq "$count" ]
awk -v count="$count" -v bytes="$bytes" -v ns=$((end - start)) -v peak="$peak" 'BEGIN {
  seconds = ns / 1e9
  printf "%d payloads of %.0f bytes on average in %.1f s\n", count, bytes / count, seconds
  printf "%.0f payloads a second, %.1f MB/s, peak memory %.1f MB\n", \
    count / seconds, bytes / seconds / 1e6, peak / 1024
}'
