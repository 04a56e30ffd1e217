// What a content handler was called with.
//
//   Delivered delivered;
//   [extension didReceiveNotificationRequest:request withContentHandler:delivered.handler()];
//   EXPECT_EQ(delivered.wait(1), content);
#pragma once

#include <Block.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <vector>

#import <MorveluneExtension/MorveluneExtension.h>

// Outlives the extensions that have its handler.
class Delivered {
 public:
  Delivered()
      : handler_(Block_copy(^(UNNotificationContent* content) {
          const std::lock_guard lock(mutex_);
          contents_.push_back([content retain]);
          changed_.notify_all();
        })) {}
  Delivered(const Delivered&) = delete;
  Delivered& operator=(const Delivered&) = delete;
  ~Delivered() {
    Block_release(handler_);
    for (UNNotificationContent* each : contents_) [each release];
  }

  [[nodiscard]] auto handler() const { return handler_; }

  // What the handler got at its call `number`, from 1; nil when there is none for ten seconds.
  UNNotificationContent* wait(std::size_t number) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::seconds(10), [&] { return contents_.size() >= number; });
    return contents_.size() >= number ? contents_[number - 1] : nil;
  }
  std::size_t calls() {
    const std::lock_guard lock(mutex_);
    return contents_.size();
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<UNNotificationContent*> contents_;
  void (^const handler_)(UNNotificationContent*);
};

inline UNNotificationRequest* requestOf(NSDictionary* userInfo) {
  UNMutableNotificationContent* content = [[[UNMutableNotificationContent alloc] init] autorelease];
  content.title = @"Sale";
  content.badge = @3;
  content.categoryIdentifier = @"offers";
  content.threadIdentifier = @"shop";
  content.sound = [UNNotificationSound defaultSound];
  content.userInfo = userInfo;
  return [UNNotificationRequest requestWithIdentifier:@"r" content:content trigger:nil];
}
