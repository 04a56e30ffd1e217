// What the stand-ins' implementations share.
#pragma once

#include <Block.h>

#include <memory>

#include "morvelune/platform/Error.h"

#import <Foundation/Foundation.h>

inline NSError* nativeError(const morvelune::Error& error) {
  NSString* const description = [NSString stringWithUTF8String:error.localizedDescription.c_str()];
  return [NSError errorWithDomain:[NSString stringWithUTF8String:error.domain.c_str()]
                             code:error.code
                         userInfo:@{NSLocalizedDescriptionKey : description}];
}

// A copy of the block, which is released with its last holder; null for none.
inline std::shared_ptr<void> heldBlock(const void* block) {
  return {_Block_copy(block), [](void* held) {
            if (held != nullptr) _Block_release(held);
          }};
}
