// MainQueue: the serial queue of the application's main thread.
#pragma once

#include <functional>

#include "morvelune/platform/Export.h"

namespace morvelune {

class MORVELUNE_API MainQueue {
 public:
  virtual ~MainQueue() = default;

  // Queues `task` for the main thread and returns at once, also on the main thread. Tasks run in
  // the order in which they were queued and are released after they ran. Any thread.
  virtual void async(std::function<void()> task) = 0;
};

}  // namespace morvelune
