// Conversions between the platform's objects and the library's: one pair of functions per pair of
// types. toNative() gives objects that the caller's autorelease pool owns; an absent value is nil.
// fromNative() reads nil as the empty string, array or dictionary, where it gives no optional.
//
// Identity is kept: a value that was made from an object turns into that very object again.
#pragma once

#import <Foundation/Foundation.h>
#import <UserNotifications/UserNotifications.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "morvelune/MVLPushHelpers.h"
#include "morvelune/platform/Error.h"
#include "morvelune/platform/Text.h"
#include "morvelune/platform/UNNotificationServiceExtension.h"
#include "morvelune/platform/URLSession.h"
#include "morvelune/platform/Value.h"

namespace morvelune::apple {

// The content handler as the platform hands it over.
using HandlerBlock = void (^)(::UNNotificationContent*);

// Keeps `object` retained; null for nil.
[[nodiscard]] Origin retained(id object);
// The object that is kept; nil for null.
[[nodiscard]] id objectOf(const Origin& origin);

// UTF-8. What no UTF-8 can express (half a surrogate pair) is dropped or replaced, as the platform
// does it; bytes that are no UTF-8 are read as ISO 8859-1.
[[nodiscard]] std::string fromNative(NSString* text);
[[nodiscard]] NSString* toNative(std::string_view text);

// Strings, numbers, data, arrays, dictionaries and the null object become the library's values.
// Any other object, and a container nested deeper than the library ever looks, becomes an opaque
// value. Entries whose key is no string are left out.
[[nodiscard]] Value valueFromNative(id object);
[[nodiscard]] id objectFromValue(const Value& value);
[[nodiscard]] Dictionary fromNative(NSDictionary* dictionary);
[[nodiscard]] NSDictionary* toNative(const Dictionary& dictionary);
[[nodiscard]] Data fromNative(NSData* data);
[[nodiscard]] NSData* toNative(const Data& data);

// A file URL is read by its path. Empty for nil and for what the library calls no URL.
[[nodiscard]] std::optional<URL> fromNative(NSURL* url);
[[nodiscard]] NSURL* toNative(const URL& url);

// Empty for nil.
[[nodiscard]] std::optional<Error> fromNative(NSError* error);
[[nodiscard]] std::optional<URLResponse> fromNative(NSURLResponse* response);

// A range of bytes of `text` in units of the string that it becomes, and back.
[[nodiscard]] ::NSRange toNative(const NSRange& range, std::string_view text);
[[nodiscard]] NSRange fromNative(::NSRange range, NSString* text);

// Null for nil, and back.
[[nodiscard]] std::shared_ptr<const UNNotificationContent> fromNative(
    ::UNNotificationContent* content);
[[nodiscard]] std::shared_ptr<UNMutableNotificationContent> fromNative(
    ::UNMutableNotificationContent* content);
[[nodiscard]] ::UNNotificationContent* toNative(const UNNotificationContent* content);
[[nodiscard]] std::shared_ptr<const UNNotificationAttachment> fromNative(
    ::UNNotificationAttachment* attachment);
[[nodiscard]] UNNotificationContent::Attachments fromNative(
    NSArray<::UNNotificationAttachment*>* attachments);
// Without those that no object of the platform stands behind.
[[nodiscard]] NSArray<::UNNotificationAttachment*>* toNative(
    const UNNotificationContent::Attachments& attachments);

[[nodiscard]] UNNotificationRequest fromNative(::UNNotificationRequest* request);
[[nodiscard]] UNNotification fromNative(::UNNotification* notification);
[[nodiscard]] UNNotificationResponse fromNative(::UNNotificationResponse* response);
// Whatever may stand for a notification.
[[nodiscard]] AnyNotification notificationFromNative(id object);

// Empty for nil. The block is retained as long as a copy of the handler lives.
[[nodiscard]] UNNotificationServiceExtension::ContentHandler fromNative(HandlerBlock handler);
// The block that a handler was made from, which lasts as long as the caller's autorelease pool; nil
// for any other handler.
[[nodiscard]] HandlerBlock toNative(const UNNotificationServiceExtension::ContentHandler& handler);

// A task of the platform's session, and the session's task of one that it made.
[[nodiscard]] NSURLSessionTask* toNative(const URLSessionTask* task);

// Nil for an absent value.
template <typename T>
[[nodiscard]] auto toNative(const std::optional<T>& value) -> decltype(toNative(*value)) {
  return value ? toNative(*value) : nil;
}

// Empty for nil.
[[nodiscard]] inline std::optional<std::string> optionalFromNative(NSString* text) {
  return text ? std::optional(fromNative(text)) : std::nullopt;
}
[[nodiscard]] inline std::optional<Dictionary> optionalFromNative(NSDictionary* dictionary) {
  return dictionary ? std::optional(fromNative(dictionary)) : std::nullopt;
}
[[nodiscard]] inline std::optional<Data> optionalFromNative(NSData* data) {
  return data ? std::optional(fromNative(data)) : std::nullopt;
}

}  // namespace morvelune::apple
