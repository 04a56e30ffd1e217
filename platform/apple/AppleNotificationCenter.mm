#include "platform/apple/AppleServices.h"
#import "platform/apple/Conversion.h"

namespace morvelune::apple {
namespace {

// The default centre. Objects are the platform's own, as retained() keeps them. Any thread may
// call, also one without an autorelease pool.
class AppleNotificationCenter : public NotificationCenter {
 public:
  void post(const PostedNotification& notification) override {
    @autoreleasepool {
      [[NSNotificationCenter defaultCenter] postNotificationName:toNative(notification.name)
                                                          object:objectOf(notification.object)
                                                        userInfo:toNative(notification.userInfo)];
    }
  }
};

}  // namespace

std::shared_ptr<NotificationCenter> makeNotificationCenter() {
  return std::make_shared<AppleNotificationCenter>();
}

}  // namespace morvelune::apple
