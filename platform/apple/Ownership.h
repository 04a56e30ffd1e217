// Who owns an object, told in one place. It holds with automatic reference counting, which the
// package managers of apps turn on, and without it.
#pragma once

#import <Foundation/Foundation.h>

#include "morvelune/platform/Origin.h"

namespace morvelune::apple {

// Keeps `object` retained; null for nil.
[[nodiscard]] inline Origin retained(id object) {
  return object != nil ? Origin(CFBridgingRetain(object), CFRelease) : nullptr;
}

// The object that is kept; nil for null.
[[nodiscard]] inline id objectOf(const Origin& origin) {
  return (__bridge id)origin.get();
}

// A new object, such as copy and alloc give, handed to the caller's autorelease pool.
[[nodiscard]] inline id autoreleased(id object) {
#if __has_feature(objc_arc)
  return object;
#else
  return [object autorelease];
#endif
}

// The object that is kept, which lasts as long as the caller's autorelease pool; nil for null.
[[nodiscard]] inline id autoreleased(const Origin& origin) {
  return origin != nullptr ? CFBridgingRelease(CFRetain(origin.get())) : nil;
}

// The Core Foundation object that is `object`, for as long as the expression that asks for it.
template <typename Ref>
[[nodiscard]] Ref coreFoundation(id object) {
  return static_cast<Ref>((__bridge CFTypeRef)object);
}

// A new object that a function of Core Foundation created, handed to the caller's autorelease pool;
// nil for null.
[[nodiscard]] inline id autoreleasedFromCoreFoundation(CFTypeRef created) {
  return CFBridgingRelease(created);
}

}  // namespace morvelune::apple
