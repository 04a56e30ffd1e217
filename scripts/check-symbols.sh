#!/usr/bin/env bash
# scripts/check-symbols.sh OBJECT...: fails unless every symbol that the objects of the library for
# iOS leave undefined belongs to a framework or library that Package.swift and the podspec link.
set -euo pipefail
[ $# -gt 0 ] || { echo "usage: $0 OBJECT..." >&2; exit 2; }
root=$(dirname "$0")/..

# The owners of symbols, by their names; the first that fits counts. Where a framework has much that
# is newer than iOS 13 or not for extensions, or shares a prefix with another one, what is used is
# listed. "newer-than-iOS-13" is what the C++ library lacks there: to_chars and from_chars, but for what
# is inline (that of integers), and memory resources. What every program on iOS is linked with is
# "system"; "test" is what GNUstep's headers, glibc and the sanitizers put in place of it.
owners='
newer-than-iOS-13  ^_Z.*(8to_chars|10from_chars|3pmr)
Foundation         ^(OBJC_(META)?CLASS_\$_)?NS[A-Z]
UIKit              ^OBJC_CLASS_\$_UI(Device|Screen)$
UserNotifications  ^OBJC_CLASS_\$_UNNotification(Attachment|Request|Response)?$|^OBJC_(META)?CLASS_\$_UNNotificationServiceExtension$|^UNNotificationAttachmentOptionsTypeHintKey$
CoreFoundation     ^CF(Retain|Release|URLCreateStringByAddingPercentEscapes)$|^__CFConstantStringClassReference$
objc               ^_?objc_|^__objc_personality
c++                ^_ZN?K?[RO]?S|^_ZT[ISTV](N?S|N10__cxxabiv1|[a-z]$)|^_Z(nw|dl|na|da)|^__cxa_|^__gxx_|^__dynamic_cast$
system             ^_Unwind_|^_NSConcrete(Stack|Global)Block$|^dispatch_|^CC_|^pthread_|^(mem|str)[a-z]+$|^(free|malloc|bcmp|snprintf)$
test               ^_NSRangeExceptionRaise$|^__libc_single_threaded$|^__(a|ub|l)san_|^__tls_get_addr$
'

# symbols FLAG OBJECT...: their names, each once.
symbols() { nm "$@" | awk 'NF >= 2 && !/:$/ { print $NF }' | LC_ALL=C sort -u; }

unknown=0
while read -r symbol; do
  owner=$(while read -r name pattern; do
    if [[ -n $name && $symbol =~ $pattern ]]; then echo "$name" && break; fi
  done <<<"$owners")
  case $owner in
    system | test) continue ;;
    objc | c++) linked=".linkedLibrary(\"$owner\")" pod=libraries ;;
    ?*) linked=".linkedFramework(\"$owner\")" pod=frameworks ;;
    *) linked="" pod="" ;;
  esac
  if [ -z "$owner" ] || ! grep -qF "$linked" "$root/Package.swift" ||
    ! grep -qE "^ *s\.$pod = .*'${owner//+/\\+}'" "$root/MorveluneExtension.podspec"; then
    echo "$symbol: no framework or library that both packages link (${owner:-unknown owner})" >&2
    unknown=$((unknown + 1))
  fi
done < <(LC_ALL=C comm -23 <(symbols -u "$@") <(symbols --defined-only "$@"))
[ "$unknown" -eq 0 ]
