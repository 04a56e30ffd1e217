// The runtime's functions. GCC's header has inline ones that do not compile with automatic
// reference counting; such code gets the types alone.
#pragma once

#if __has_feature(objc_arc)
#include <objc/objc.h>
typedef struct objc_method* Method;
typedef struct objc_ivar* Ivar;
#else
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wgnu-include-next"
#include_next <objc/runtime.h>
#pragma clang diagnostic pop
#endif
