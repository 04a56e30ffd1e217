#!/usr/bin/env bash
# Counts the lines that are neither blank nor comments: those of the tests beside all others.
set -euo pipefail
cd "$(dirname "$0")/.."

# Documents, property lists and media are no code. A new file counts before it is committed.
git ls-files -z --cached --others --exclude-standard | while IFS= read -r -d '' file; do
  [ -f "$file" ] || continue  # removed, and not committed yet
  case $file in
    *.h | *.cpp | *.m | *.mm | *.swift | *.modulemap) comment='//' ;;
    CMakeLists.txt | */CMakeLists.txt | *.cmake | *.cmake.in) comment='#' ;;
    *.sh | *.py | *.podspec | .ci/run | .clang-format | .clang-tidy) comment='#' ;;
    *.json) comment='' ;;
    *) continue ;;
  esac
  case $file in tests/* | fuzz/*) side=tests ;; *) side=others ;; esac
  awk -v side="$side" -v comment="$comment" '
    { sub(/^[ \t]+/, "") }
    $0 == "" || (comment != "" && index($0, comment) == 1) { next }
    { ++lines }
    END { print side, lines + 0 }' "$file"
done | awk '
  { count[$1] += $2 }
  END {
    printf "tests   %6d\nothers  %6d\nshare   %6.1f %%\n", count["tests"], count["others"],
      100 * count["tests"] / (count["tests"] + count["others"])
  }'
