// Conversions between the platform's objects and the library's. toNative() gives objects that the
// caller's autorelease pool owns, and nil for an absent value. Where fromNative() gives no optional
// and no pointer, it reads nil as empty.
//
// Identity is kept: a Value, Dictionary, content, attachment or handler that was made from an
// object turns into that very object again.
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
#import "platform/apple/Ownership.h"

namespace morvelune::apple {

// The content handler as the platform hands it over.
using HandlerBlock = void (^)(::UNNotificationContent*);

// UTF-8. A leading U+FEFF is kept. What no UTF-8 can express (half a surrogate pair) is dropped or
// replaced, as the platform does it; bytes that are no UTF-8 are read as ISO 8859-1.
[[nodiscard]] std::string fromNative(NSString* text);
[[nodiscard]] NSString* toNative(std::string_view text);

// Strings, numbers, data, arrays and dictionaries become the library's values; nil and the null
// object become null. Any other object becomes an opaque value, and so does a container that stands
// in itself or deeper than the library looks. Entries whose key is no string are left out.
[[nodiscard]] Value valueFromNative(id object);
[[nodiscard]] id objectFromValue(const Value& value);
[[nodiscard]] Dictionary fromNative(NSDictionary* dictionary);
[[nodiscard]] NSDictionary* toNative(const Dictionary& dictionary);
[[nodiscard]] Data fromNative(NSData* data);
[[nodiscard]] NSData* toNative(const Data& data);

// A file URL is read by its path alone. Empty for nil.
[[nodiscard]] std::optional<URL> fromNative(NSURL* url);
[[nodiscard]] NSURL* toNative(const URL& url);

// Empty for nil.
[[nodiscard]] std::optional<Error> fromNative(NSError* error);
[[nodiscard]] std::optional<URLResponse> fromNative(NSURLResponse* response);

// A range of the bytes of `text` becomes one of the UTF-16 units of the string that is made of it,
// and back.
[[nodiscard]] ::NSRange toNative(const NSRange& range, std::string_view text);
[[nodiscard]] NSRange fromNative(::NSRange range, NSString* text);

// Null for nil, and nil for null.
[[nodiscard]] std::shared_ptr<const UNNotificationContent> fromNative(
    ::UNNotificationContent* content);
[[nodiscard]] std::shared_ptr<UNMutableNotificationContent> fromNative(
    ::UNMutableNotificationContent* content);
[[nodiscard]] ::UNNotificationContent* toNative(const UNNotificationContent* content);
[[nodiscard]] std::shared_ptr<const UNNotificationAttachment> fromNative(
    ::UNNotificationAttachment* attachment);
[[nodiscard]] UNNotificationContent::Attachments fromNative(
    NSArray<::UNNotificationAttachment*>* attachments);
// Leaves out attachments that were not made from an object of the platform.
[[nodiscard]] NSArray<::UNNotificationAttachment*>* toNative(
    const UNNotificationContent::Attachments& attachments);

[[nodiscard]] UNNotificationRequest fromNative(::UNNotificationRequest* request);
[[nodiscard]] UNNotification fromNative(::UNNotification* notification);
[[nodiscard]] UNNotificationResponse fromNative(::UNNotificationResponse* response);
// A dictionary, notification, response or request; for any other object and nil, no notification.
[[nodiscard]] AnyNotification notificationFromNative(id object);

// Empty for nil. The block lives as long as a copy of the handler does.
[[nodiscard]] UNNotificationServiceExtension::ContentHandler fromNative(HandlerBlock handler);
// The block that a handler was made from, which lasts as long as the caller's autorelease pool; nil
// for any other handler.
[[nodiscard]] HandlerBlock toNative(const UNNotificationServiceExtension::ContentHandler& handler);

// The platform's own task behind a task of makeURLSession(); nil for any other.
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
