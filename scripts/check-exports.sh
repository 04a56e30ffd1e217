#!/usr/bin/env bash
# Fails when the shared library $1 exports a name that belongs to nothing that the headers in folder
# $2 mark with MORVELUNE_API. Else prints how many names it exports.
set -euo pipefail

# The names of what is marked: of classes and structures, and of functions and variables.
marked=$(find "$2" -name '*.h' ! -name Export.h -exec perl -0777 -ne '
  print "$1\n" while /\b(?:class|struct) MORVELUNE_API (\w+)/g;
  print "$1\n" while /(?<!class )(?<!struct )\bMORVELUNE_API [^;()]*?(\w+|operator==)(?:\(|\[\]|;)/g;
' {} +)

# Each exported name without "vtable for", the namespace, and what follows its first part.
foreign=$(nm --dynamic --defined-only --demangle "$1" | cut -d' ' -f3- |
  sed -E 's/^(vtable|typeinfo|typeinfo name) for //; s/^morvelune::(operator==|\w+).*/\1/' |
  sort -u | grep -vxF "$marked" || true)
if [ -z "$marked" ] || [ -n "$foreign" ]; then
  printf 'exported, but not marked in a header:\n%s\n' "$foreign" >&2
  exit 1
fi
nm --dynamic --defined-only "$1" | wc -l
