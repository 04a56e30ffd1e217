// Lets objects that clang compiled with automatic reference counting, for a newer runtime, run on
// GCC's: the entry points that they call, and the layout of their classes.
#include <Block.h>
#include <cxxabi.h>
#include <dlfcn.h>
#include <objc/message.h>
#include <objc/runtime.h>

#include <cassert>
#include <typeinfo>

#import <Foundation/Foundation.h>

namespace {

// What a look-up gives in that runtime. Only the method is read.
struct Slot {
  const void *owner, *cachedFor, *types;
  int version;
  IMP method;
};

Slot* slotFor(IMP method) {
  static thread_local Slot slot;
  slot.method = method;
  return &slot;
}

struct InstanceVariables {
  int count;
  struct {
    const char *name, *type;
    int offset;
  } list[1];  // and more, up to the count
};

// A class as the compiler lays it out, before the runtime has read it.
struct CompiledClass {
  const void* metaclass;
  const char *superclass, *name;
  long version;
  unsigned long info;
  long instanceSize;  // without the superclass's and negative, until it is known
  InstanceVariables* variables;
  const void* unused[7];
  int** offsets;  // where the code reads the offsets, counted from the superclass's end
};

struct CompiledModule {
  unsigned long version, size;
  const char* name;
  struct {
    unsigned long selectorCount;
    const void* selectors;
    unsigned short classCount, categoryCount;
    CompiledClass* classes[1];  // and more, up to the count
  } * symbols;
};

// Puts the superclass's variables before the class's own. The superclass must be loaded: it stands
// in a file that is linked before this one.
void layOut(CompiledClass& each) {
  const auto superclass = static_cast<Class>(objc_getClass(each.superclass));
  assert(superclass != Nil);
  const auto start = static_cast<long>(class_getInstanceSize(superclass));
  each.instanceSize = start - each.instanceSize;
  for (int i = 0; each.variables != nullptr && i < each.variables->count; ++i) {
    *each.offsets[i] += static_cast<int>(start);
    each.variables->list[i].offset = *each.offsets[i];
  }
}

}  // namespace

// Matches what Objective-C throws, which to C++ is foreign.
namespace gnustep::libobjc {
struct __objc_class_type_info : std::type_info {
  using std::type_info::type_info;
  bool __do_catch(const std::type_info* thrown, void**, unsigned) const override;
};
bool __objc_class_type_info::__do_catch(const std::type_info* thrown, void**, unsigned) const {
  return *thrown == typeid(abi::__foreign_exception);
}
}  // namespace gnustep::libobjc

extern "C" {

id objc_retain(id object) {
  return [object retain];
}
id objc_retainAutoreleasedReturnValue(id) __attribute__((alias("objc_retain")));
void objc_release(id object) {
  [object release];
}
id objc_retainAutorelease(id object) {
  return [[object retain] autorelease];
}
id objc_retainAutoreleaseReturnValue(id) __attribute__((alias("objc_retainAutorelease")));
id objc_autoreleaseReturnValue(id object) {
  return [object autorelease];
}
void objc_storeStrong(id* place, id object) {
  id const old = *place;
  *place = [object retain];
  [old release];
}
id objc_retainBlock(id block) {
  return static_cast<id>(_Block_copy(block));
}
void* objc_autoreleasePoolPush() {
  return [[NSAutoreleasePool alloc] init];
}
void objc_autoreleasePoolPop(void* pool) {
  [static_cast<NSAutoreleasePool*>(pool) drain];
}

Slot* objc_msg_lookup_sender(id* receiver, SEL selector, id) {
  return slotFor(objc_msg_lookup(*receiver, selector));
}
Slot* objc_slot_lookup_super(objc_super* super, SEL selector) {
  return slotFor(objc_msg_lookup_super(super, selector));
}

int __gxx_personality_v0(int, int, unsigned long, void*, void*);
int __gnustep_objcxx_personality_v0(int version, int actions, unsigned long thrower,
                                    void* exception, void* context) {
  return __gxx_personality_v0(version, actions, thrower, exception, context);
}

// In C nothing is caught, but what a function owns is released.
int __gnustep_objc_personality_v0(int, int, unsigned long, void*, void*)
    __attribute__((alias("__gnustep_objcxx_personality_v0")));

// Goes before the runtime's own, which it calls.
void __objc_exec_class(void* loaded) {
  static const auto next =
      reinterpret_cast<void (*)(void*)>(::dlsym(RTLD_NEXT, "__objc_exec_class"));
  auto* module = static_cast<CompiledModule*>(loaded);
  constexpr unsigned long oldestWithoutLayout = 9;
  if (module->version >= oldestWithoutLayout) {
    module->version = 8;
    module->size = 4 * sizeof(void*);
    for (int i = 0; i < module->symbols->classCount; ++i) layOut(*module->symbols->classes[i]);
  }
  next(loaded);
}

}  // extern "C"
