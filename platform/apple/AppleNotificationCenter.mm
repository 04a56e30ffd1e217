#include <map>
#include <mutex>
#include <utility>

#include "platform/apple/AppleServices.h"
#import "platform/apple/Conversion.h"

// What the platform's centre calls; it calls the library's observer.
@interface MVLNotificationObserver : NSObject {
 @private
  morvelune::NotificationCenter::Observer* _observer;
}
- (instancetype)initWithObserver:(morvelune::NotificationCenter::Observer)observer;
- (void)received:(NSNotification*)notification;
@end

@implementation MVLNotificationObserver

- (instancetype)initWithObserver:(morvelune::NotificationCenter::Observer)observer {
  if ((self = [super init])) {
    _observer = new morvelune::NotificationCenter::Observer(std::move(observer));
  }
  return self;
}

- (void)dealloc {
  delete _observer;
  [super dealloc];
}

- (void)received:(NSNotification*)notification {
  namespace apple = morvelune::apple;
  [[self retain] autorelease];  // the observer may remove itself
  (*_observer)({apple::fromNative(notification.name), apple::retained(notification.object),
                apple::optionalFromNative(notification.userInfo)});
}

@end

namespace morvelune::apple {
namespace {

// The default centre. Objects are the platform's own, as retained() keeps them. Any thread may
// call, also one without an autorelease pool.
class AppleNotificationCenter : public NotificationCenter {
 public:
  Token addObserver(std::string name, std::shared_ptr<const void> object,
                    Observer observer) override {
    @autoreleasepool {
      const Origin made = retained(
          [[[MVLNotificationObserver alloc] initWithObserver:std::move(observer)] autorelease]);
      [[NSNotificationCenter defaultCenter] addObserver:objectOf(made)
                                               selector:@selector(received:)
                                                   name:toNative(name)
                                                 object:objectOf(object)];
      const std::lock_guard lock(mutex_);
      observers_.emplace(++last_, made);
      return Token{last_};
    }
  }

  void removeObserver(Token token) override {
    @autoreleasepool {
      const Origin removed = take(token);
      if (removed) [[NSNotificationCenter defaultCenter] removeObserver:objectOf(removed)];
    }
  }

  void post(const PostedNotification& notification) override {
    @autoreleasepool {
      [[NSNotificationCenter defaultCenter] postNotificationName:toNative(notification.name)
                                                          object:objectOf(notification.object)
                                                        userInfo:toNative(notification.userInfo)];
    }
  }

 private:
  Origin take(Token token) {
    const std::lock_guard lock(mutex_);
    auto node = observers_.extract(static_cast<std::uint64_t>(token));
    return node ? std::move(node.mapped()) : nullptr;
  }

  std::mutex mutex_;
  std::map<std::uint64_t, Origin> observers_;
  std::uint64_t last_ = 0;
};

}  // namespace

std::shared_ptr<NotificationCenter> makeNotificationCenter() {
  return std::make_shared<AppleNotificationCenter>();
}

}  // namespace morvelune::apple
