// Makes blocks objects, as Apple's are. The blocks runtime knows of no objects.
#include <Block.h>

#include <cstring>
#include <initializer_list>

#import <Foundation/Foundation.h>

// What the first word of every block points to: room for a class, which the runtime leaves empty.
extern "C" void *_NSConcreteStackBlock[32], *_NSConcreteMallocBlock[32],
    *_NSConcreteGlobalBlock[32];

// What every block begins with. The class does not tell where it is: a copy has the original's.
struct Layout {
  const void* isa;
  int flags;
};

static bool isOnStack(id block) {
  constexpr int copied = 1 << 24, global = 1 << 28;
  return (reinterpret_cast<const Layout*>(block)->flags & (copied | global)) == 0;
}

@interface StandinBlock : NSObject
@end

@implementation StandinBlock

+ (void)load {
  [[self alloc] dealloc];  // or there would be no methods yet to be found
  const std::size_t size = class_getInstanceSize(object_getClass(self));
  for (void* room : {_NSConcreteStackBlock, _NSConcreteMallocBlock, _NSConcreteGlobalBlock}) {
    std::memcpy(room, self, size);
  }
}

- (id)copyWithZone:(NSZone*)zone {
  return static_cast<id>(_Block_copy(self));
}

// One on the stack stays there until it is copied.
- (id)retain {
  return isOnStack(self) ? self : static_cast<id>(_Block_copy(self));
}

- (oneway void)release {
  if (!isOnStack(self)) _Block_release(self);
}

@end
