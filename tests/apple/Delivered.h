// What a content handler was called with.
//
//   Delivered delivered;
//   [extension didReceiveNotificationRequest:request withContentHandler:delivered.handler()];
//   EXPECT_EQ(delivered.wait(1), content);
#pragma once

#include <mutex>
#include <vector>

#import "platform/apple/Conversion.h"
#include "support/Eventually.h"

#import <MorveluneExtension/MorveluneExtension.h>

// Must live until its handler has been called for the last time.
class Delivered {
 public:
  [[nodiscard]] morvelune::apple::HandlerBlock handler() const {
    return morvelune::apple::objectOf(handler_);
  }

  // What the handler got at its call `number`, from 1; nil when there is none for ten seconds.
  UNNotificationContent* wait(std::size_t number) {
    if (!morvelune::testing::eventually([&] { return calls() >= number; })) return nil;
    const std::lock_guard lock(mutex_);
    return morvelune::apple::objectOf(contents_[number - 1]);
  }
  std::size_t calls() {
    const std::lock_guard lock(mutex_);
    return contents_.size();
  }

 private:
  std::mutex mutex_;
  std::vector<morvelune::Origin> contents_;
  const morvelune::Origin handler_ =
      morvelune::apple::retained(morvelune::apple::autoreleased([^(UNNotificationContent* content) {
        const std::lock_guard lock(mutex_);
        contents_.push_back(morvelune::apple::retained(content));
      } copy]));
};

inline UNNotificationRequest* requestOf(NSDictionary* userInfo) {
  UNMutableNotificationContent* content =
      morvelune::apple::autoreleased([[UNMutableNotificationContent alloc] init]);
  content.title = @"Été 😀";
  content.threadIdentifier = @"shop";
  content.userInfo = userInfo;
  return [UNNotificationRequest requestWithIdentifier:@"r" content:content trigger:nil];
}
