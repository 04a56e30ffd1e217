#include <dispatch/dispatch.h>

#include "platform/apple/AppleServices.h"

namespace morvelune::apple {
namespace {

class AppleMainQueue : public MainQueue {
 public:
  void async(std::function<void()> task) override {
    dispatch_async(dispatch_get_main_queue(), ^{
      task();
    });
  }
};

}  // namespace

std::shared_ptr<MainQueue> makeMainQueue() {
  return std::make_shared<AppleMainQueue>();
}

}  // namespace morvelune::apple
