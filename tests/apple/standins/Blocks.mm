// Makes copied blocks retain the objects that they capture, as Apple's do: the blocks runtime knows
// of no objects. These definitions go before its own, which do the rest.
#include <Block_private.h>
#include <dlfcn.h>

#import <Foundation/Foundation.h>

template <typename Function>
static Function* nextDefinition(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

void _Block_object_assign(void* destination, const void* object, const int kind) {
  static const auto next = nextDefinition<decltype(_Block_object_assign)>("_Block_object_assign");
  if (kind == BLOCK_FIELD_IS_OBJECT) {
    *static_cast<id*>(destination) = [(id)object retain];
  } else {
    next(destination, object, kind);
  }
}

void _Block_object_dispose(const void* object, const int kind) {
  static const auto next = nextDefinition<decltype(_Block_object_dispose)>("_Block_object_dispose");
  if (kind == BLOCK_FIELD_IS_OBJECT) {
    [(id)object release];
  } else {
    next(object, kind);
  }
}
