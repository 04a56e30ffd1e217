#include "platform/apple/NativeContent.h"

#import "platform/apple/Conversion.h"

namespace morvelune::apple {
namespace {

std::shared_ptr<UNMutableNotificationContent> mutableCopyOf(const Origin& origin) {
  return fromNative(
      static_cast<::UNMutableNotificationContent*>(autoreleased([objectOf(origin) mutableCopy])));
}

std::shared_ptr<const UNNotificationContent> copyOf(const Origin& origin) {
  return fromNative(static_cast<::UNNotificationContent*>(autoreleased([objectOf(origin) copy])));
}

}  // namespace

std::shared_ptr<UNMutableNotificationContent> NativeContent::mutableCopy() const {
  return mutableCopyOf(origin());
}

std::shared_ptr<const UNNotificationContent> NativeContent::copy() const {
  return copyOf(origin());
}

void NativeMutableContent::setUserInfo(Dictionary userInfo) {
  const std::lock_guard lock(mutex_);
  static_cast<::UNMutableNotificationContent*>(objectOf(origin())).userInfo = toNative(userInfo);
  UNMutableNotificationContent::setUserInfo(std::move(userInfo));
}

void NativeMutableContent::setAttachments(Attachments attachments) {
  const std::lock_guard lock(mutex_);
  static_cast<::UNMutableNotificationContent*>(objectOf(origin())).attachments =
      toNative(attachments);
  UNMutableNotificationContent::setAttachments(std::move(attachments));
}

std::shared_ptr<UNMutableNotificationContent> NativeMutableContent::mutableCopy() const {
  const std::lock_guard lock(mutex_);
  return mutableCopyOf(origin());
}

std::shared_ptr<const UNNotificationContent> NativeMutableContent::copy() const {
  const std::lock_guard lock(mutex_);
  return copyOf(origin());
}

}  // namespace morvelune::apple
