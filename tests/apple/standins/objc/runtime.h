// The runtime's functions. GCC's header has inline ones that do not compile with automatic
// reference counting; for such code, the functions that it uses are declared here.
#pragma once

#if __has_feature(objc_arc)

#include "../Export.h"

#include <objc/objc.h>

typedef struct objc_method* Method;
typedef struct objc_ivar* Ivar;

STANDIN_EXPORT Method class_getClassMethod(Class inClass, SEL selector);
STANDIN_EXPORT Method class_getInstanceMethod(Class inClass, SEL selector);
STANDIN_EXPORT IMP method_getImplementation(Method method);
STANDIN_EXPORT IMP method_setImplementation(Method method, IMP implementation);

#else

#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wgnu-include-next"
#include_next <objc/runtime.h>
#pragma clang diagnostic pop

#endif
