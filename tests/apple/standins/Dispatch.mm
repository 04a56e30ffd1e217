#include <dispatch/dispatch.h>

#include "Support.h"
#include "platform/linux/LinuxServices.h"

#import "Standins.h"

static morvelune::LinuxMainQueue& mainQueue() {
  static const auto queue = morvelune::makeLinuxMainQueue();
  return *queue;
}

dispatch_queue_t dispatch_get_main_queue() {
  return reinterpret_cast<dispatch_queue_t>(&mainQueue());
}

void dispatch_async(dispatch_queue_t queue, dispatch_block_t block) {
  reinterpret_cast<morvelune::LinuxMainQueue*>(queue)->async(
      [held = heldBlock(block)] { ((dispatch_block_t)held.get())(); });
}

NSUInteger StandinDrainMainQueue() {
  @autoreleasepool {
    return mainQueue().drain();
  }
}
