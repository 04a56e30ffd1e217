// Makes blocks objects, as Apple's are. The blocks runtime knows of no objects.
#include <Block.h>

#include <cstring>
#include <initializer_list>

#import <Foundation/Foundation.h>

// What the first word of every block points to: room for a class, which the runtime leaves empty.
extern "C" void *_NSConcreteStackBlock[32], *_NSConcreteMallocBlock[32],
    *_NSConcreteGlobalBlock[32];

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

- (id)retain {
  return static_cast<id>(_Block_copy(self));
}

- (oneway void)release {
  _Block_release(self);
}

@end
