// A CFStringRef is the NSString object itself.
#pragma once

#include <stdint.h>

#include "../Export.h"

typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFString* CFStringRef;
typedef const void* CFTypeRef;
typedef uint32_t CFStringEncoding;

enum { kCFStringEncodingUTF8 = 0x08000100 };

#define kCFAllocatorDefault ((CFAllocatorRef)0)

// Any object will do.
STANDIN_EXPORT CFTypeRef CFRetain(CFTypeRef object);
STANDIN_EXPORT void CFRelease(CFTypeRef object);

// Escapes as if there were no characters to leave unescaped, and in UTF-8.
STANDIN_EXPORT CFStringRef CFURLCreateStringByAddingPercentEscapes(
    CFAllocatorRef allocator, CFStringRef original, CFStringRef charactersToLeaveUnescaped,
    CFStringRef legalURLCharactersToBeEscaped, CFStringEncoding encoding);
