#!/usr/bin/env bash
# Checks what an app's package manager makes of the library, and what Swift makes of its examples.
# Needs Swift.
set -euo pipefail
cd "$(dirname "$0")/.."

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# package FOLDER COMMAND...: asks the package manager, which leaves nothing in the folder.
package() {
  local folder=$1
  shift
  swift package --package-path "$folder" --scratch-path "$work/scratch/$(basename "$folder")" \
    --cache-path "$work/cache" --disable-sandbox "$@"
}

# publish FOLDER: makes the folder a repository with a tagged release.
publish() {
  git -C "$1" init -q
  git -C "$1" add -A
  git -C "$1" -c user.name=test -c user.email=test@example.com commit -qm 'Release'
  git -C "$1" tag 1.0.0
}

# consumer NAME URL: a package in the folder NAME that depends on the repository by version.
consumer() {
  mkdir -p "$work/$1/Sources/App"
  cat >"$work/$1/Package.swift" <<MANIFEST
// swift-tools-version:5.9
import PackageDescription

let package = Package(
  name: "App",
  platforms: [.iOS(.v13)],
  dependencies: [.package(url: "file://$2", from: "1.0.0")],
  targets: [
    .target(
      name: "App",
      dependencies: [.product(name: "MorveluneExtension", package: "MorveluneExtension")])
  ]
)
MANIFEST
  echo 'let app = 1' >"$work/$1/Sources/App/App.swift"
}

echo "The manifest"
package . dump-package >"$work/package.json"
package . describe >"$work/description" 2>&1
if grep -qE '^(warning|error)' "$work/description"; then
  cat "$work/description" >&2
  exit 1
fi

echo "A package that depends on the library by version"
released=$work/released/MorveluneExtension
mkdir -p "$released"
git ls-files -z --cached --others --exclude-standard |
  while IFS= read -r -d '' file; do [ ! -f "$file" ] || printf '%s\0' "$file"; done |
  tar --null -T - -cf - | tar -xf - -C "$released"
publish "$released"
consumer accepted "$released"
package "$work/accepted" show-dependencies

echo "The same with a flag that is refused"
flagged=$work/flagged/MorveluneExtension
mkdir -p "$work/flagged"
cp -R "$released" "$flagged"
rm -rf "$flagged/.git"
sed -i 's/^      cxxSettings: \[/&\n        .unsafeFlags(["-fno-objc-arc"]),/' "$flagged/Package.swift"
publish "$flagged"
consumer refused "$flagged"
if package "$work/refused" show-dependencies >"$work/answer" 2>&1; then
  echo "The package manager takes a dependency by version with an unsafe flag" >&2
  exit 1
fi
grep -F "unsafe build flags" "$work/answer"

echo "The Swift examples, and the names that Swift sees"
mapfile -t examples < <(git ls-files --cached --others --exclude-standard 'examples/ios/Swift/*.swift')
swiftc -frontend -parse "${examples[@]}"
if ! command -v gnustep-config >/dev/null; then
  echo "not type-checked: GNUstep is not found"
  exit 0
fi
# Swift reads the library's own headers over the stand-ins, and types are checked. What needs a text as
# a String, or a list as an Array, is only parsed: that takes Swift on Apple's platforms.
mapfile -t checked < <(printf '%s\n' "${examples[@]}" | grep -E "/Notification(Content|Service)/")
flags=(-I tests/apple/standins -I apple/include)
for flag in $(gnustep-config --objc-flags); do
  case $flag in
    -DGSWARN | -DGSDIAGNOSE) ;;
    -I/*) flags+=(-Xcc -isystem -Xcc "${flag#-I}") ;;
    -D* | -fconstant-string-class=* | -fobjc-exceptions) flags+=(-Xcc "$flag") ;;
  esac
done
for flag in -fblocks -Itests/apple/standins -idirafter "$(gcc -print-file-name=include)"; do
  flags+=(-Xcc "$flag")
done
# typed FLAG|FILE...: the errors and warnings of the type-checker in these files.
typed() {
  swiftc -frontend -typecheck -enable-objc-interop -module-cache-path "$work/modules" \
    "${flags[@]}" "$@" 2>&1
}
# clean FLAG|FILE...: fails with them unless there are none.
clean() {
  if ! typed "$@" >"$work/answer" || grep -qE '\.swift:[0-9]+:[0-9]+: warning' "$work/answer"; then
    cat "$work/answer" >&2
    return 1
  fi
}
clean "${checked[@]}" tests/apple/swift/Names.swift
clean -swift-version 6 "${checked[@]}" tests/apple/swift/Names.swift
# As docs/ios.md writes the class for an app whose default isolation is the main actor.
sed 's/^class /nonisolated &/' examples/ios/Swift/NotificationService/NotificationService.swift \
  >"$work/NotificationService.swift"
clean -swift-version 6 -default-isolation MainActor "$work/NotificationService.swift"
