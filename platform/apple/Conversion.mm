#import "platform/apple/Conversion.h"

#include <cstring>
#include <utility>
#include <vector>

#include "platform/apple/NativeContent.h"

namespace morvelune::apple {
namespace {

// The containers that a value stands in, innermost first.
struct Nesting {
  __unsafe_unretained id container;
  const Nesting* outer;
};

// Whether a container passes through unread: it stands too deep, or in itself.
bool isTooDeep(id container, const Nesting* outer) {
  int depth = 0;
  for (; outer != nullptr; outer = outer->outer, ++depth) {
    if (outer->container == container) return true;
  }
  return depth >= deepestContainerRead;
}

Value containerFromNative(id object, const Nesting* outer);

bool isBoolean(NSNumber* number) {
  // The platform's booleans are numbers of the type "c" or "B". So are the numbers made of a char,
  // of which 0 and 1 cannot be told from booleans.
  return std::strchr("cB", [number objCType][0]) && (number.intValue == 0 || number.intValue == 1);
}

Value fromNativeNumber(NSNumber* number) {
  if (isBoolean(number)) return static_cast<bool>(number.boolValue);
  switch ([number objCType][0]) {
    case 'f':
    case 'd':
      return number.doubleValue;
    case 'Q':
    case 'L':
    case 'I':
      return number.unsignedLongLongValue;
    default:
      return number.longLongValue;
  }
}

Value valueFromNative(id object, const Nesting* outer) {
  if (object == nil || [object isKindOfClass:[NSNull class]]) return nullptr;
  if ([object isKindOfClass:[NSString class]]) {
    return Value(fromNative(static_cast<NSString*>(object))).withOrigin(retained(object));
  }
  if ([object isKindOfClass:[NSNumber class]]) {
    return fromNativeNumber(object).withOrigin(retained(object));
  }
  if ([object isKindOfClass:[NSData class]]) {
    return Value(fromNative(static_cast<NSData*>(object))).withOrigin(retained(object));
  }
  return isTooDeep(object, outer) ? Value::opaque(retained(object))
                                  : containerFromNative(object, outer);
}

Dictionary dictionaryFromNative(NSDictionary* dictionary, const Nesting* outer) {
  const Nesting nesting{dictionary, outer};
  std::vector<Dictionary::Entry> entries;
  for (id key in dictionary) {
    if (![key isKindOfClass:[NSString class]]) continue;
    entries.push_back({fromNative(static_cast<NSString*>(key)),
                       valueFromNative([dictionary objectForKey:key], &nesting)});
  }
  return Dictionary(std::move(entries), retained(dictionary));
}

Value containerFromNative(id object, const Nesting* outer) {
  if ([object isKindOfClass:[NSDictionary class]]) return dictionaryFromNative(object, outer);
  if (![object isKindOfClass:[NSArray class]]) return Value::opaque(retained(object));
  const Nesting nesting{object, outer};
  std::vector<Value> values;
  for (id element in static_cast<NSArray*>(object)) {
    values.push_back(valueFromNative(element, &nesting));
  }
  return Array(std::move(values), retained(object));
}

NSArray* arrayFromValues(const Array& array) {
  NSMutableArray* objects = [NSMutableArray arrayWithCapacity:array.size()];
  for (const Value& value : array) [objects addObject:objectFromValue(value)];
  return autoreleased([objects copy]);
}

NSNumber* numberOf(std::int64_t number) {
  return [NSNumber numberWithLongLong:number];
}

NSNumber* numberOf(std::uint64_t number) {
  return [NSNumber numberWithUnsignedLongLong:number];
}

UNNotificationContent::Fields fieldsOf(::UNNotificationContent* content) {
  return {.title = optionalFromNative(content.title),
          .subtitle = optionalFromNative(content.subtitle),
          .body = optionalFromNative(content.body),
          .userInfo = optionalFromNative(content.userInfo),
          .attachments = fromNative(content.attachments)};
}

// The content handler that calls a block of the platform's.
struct BlockHandler {
  Origin block;

  void operator()(const std::shared_ptr<const UNNotificationContent>& content) const {
    @autoreleasepool {
      static_cast<HandlerBlock>(objectOf(block))(toNative(content.get()));
    }
  }
};

}  // namespace

std::string fromNative(NSString* text) {
  NSData* bytes = [text dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
  return {static_cast<const char*>(bytes.bytes), bytes.length};
}

NSString* toNative(std::string_view text) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(byteOrderMark)) {
    // The platform's reader would drop it; behind another character it stays.
    return [toNative("." + std::string(text)) substringFromIndex:1];
  }
  const auto read = [text](NSStringEncoding encoding) -> NSString* {
    return autoreleased([[NSString alloc] initWithBytes:text.data()
                                                 length:text.size()
                                               encoding:encoding]);
  };
  NSString* string = read(NSUTF8StringEncoding);
  return string != nil ? string : read(NSISOLatin1StringEncoding);
}

Value valueFromNative(id object) {
  return valueFromNative(object, nullptr);
}

id objectFromValue(const Value& value) {
  if (const Origin origin = value.origin()) return autoreleased(origin);
  switch (value.type()) {
    case Value::Type::boolean:
      return [NSNumber numberWithBool:*value.boolean()];
    case Value::Type::integer:
      return *value.visitInteger([](auto number) { return numberOf(number); });
    case Value::Type::real:
      return [NSNumber numberWithDouble:*value.real()];
    case Value::Type::string:
      return toNative(*value.string());
    case Value::Type::data:
      return toNative(*value.data());
    case Value::Type::array:
      return arrayFromValues(*value.array());
    case Value::Type::dictionary:
      return toNative(*value.dictionary());
    case Value::Type::null:
    case Value::Type::opaque:
      break;
  }
  return [NSNull null];
}

Dictionary fromNative(NSDictionary* dictionary) {
  return dictionary ? dictionaryFromNative(dictionary, nullptr) : Dictionary();
}

NSDictionary* toNative(const Dictionary& dictionary) {
  if (const Origin origin = dictionary.origin()) return autoreleased(origin);
  NSMutableDictionary* objects = [NSMutableDictionary dictionaryWithCapacity:dictionary.size()];
  for (const auto& [key, value] : dictionary) {
    [objects setObject:objectFromValue(value) forKey:toNative(key)];
  }
  return autoreleased([objects copy]);
}

Data fromNative(NSData* data) {
  return {retained(data), {static_cast<const std::byte*>(data.bytes), data.length}};
}

NSData* toNative(const Data& data) {
  return [NSData dataWithBytes:data.bytes().data() length:data.size()];
}

std::optional<URL> fromNative(NSURL* url) {
  if (url == nil) return std::nullopt;
  return url.fileURL ? URL::fileURL(fromNative(url.path))
                     : URL::unchecked(fromNative(url.absoluteString));
}

NSURL* toNative(const URL& url) {
  return [NSURL URLWithString:toNative(url.absoluteString())];
}

std::optional<Error> fromNative(NSError* error) {
  if (error == nil) return std::nullopt;
  return Error{fromNative(error.domain), static_cast<int>(error.code),
               fromNative(error.localizedDescription)};
}

std::optional<URLResponse> fromNative(NSURLResponse* response) {
  if (response == nil) return std::nullopt;
  const bool isHTTP = [response isKindOfClass:[NSHTTPURLResponse class]];
  const auto status = isHTTP ? static_cast<NSHTTPURLResponse*>(response).statusCode : 0;
  return URLResponse{static_cast<int>(status), optionalFromNative(response.suggestedFilename)};
}

::NSRange toNative(const NSRange& range, std::string_view text) {
  if (range.location == NSNotFound) return NSMakeRange(::NSNotFound, 0);
  return NSMakeRange(toNative(text.substr(0, range.location)).length,
                     toNative(text.substr(range.location, range.length)).length);
}

NSRange fromNative(::NSRange range, NSString* text) {
  if (range.location == static_cast<NSUInteger>(::NSNotFound)) return {};
  return {fromNative([text substringToIndex:range.location]).size(),
          fromNative([text substringWithRange:range]).size()};
}

std::shared_ptr<const UNNotificationContent> fromNative(::UNNotificationContent* content) {
  if (content == nil) return nullptr;
  return std::make_shared<const NativeContent>(fieldsOf(content), retained(content));
}

std::shared_ptr<UNMutableNotificationContent> fromNative(::UNMutableNotificationContent* content) {
  if (content == nil) return nullptr;
  return std::make_shared<NativeMutableContent>(fieldsOf(content), retained(content));
}

::UNNotificationContent* toNative(const UNNotificationContent* content) {
  return content ? autoreleased(content->origin()) : nil;
}

std::shared_ptr<const UNNotificationAttachment> fromNative(::UNNotificationAttachment* attachment) {
  if (attachment == nil) return nullptr;
  return std::make_shared<const UNNotificationAttachment>(
      fromNative(attachment.identifier), fromNative(attachment.URL).value_or(URL::fileURL("")),
      optionalFromNative(attachment.type), retained(attachment));
}

UNNotificationContent::Attachments fromNative(NSArray<::UNNotificationAttachment*>* attachments) {
  UNNotificationContent::Attachments all;
  for (::UNNotificationAttachment* each in attachments) all.push_back(fromNative(each));
  return all;
}

NSArray<::UNNotificationAttachment*>* toNative(
    const UNNotificationContent::Attachments& attachments) {
  NSMutableArray* objects = [NSMutableArray arrayWithCapacity:attachments.size()];
  for (const auto& each : attachments) {
    if (each->origin()) [objects addObject:objectOf(each->origin())];
  }
  return autoreleased([objects copy]);
}

UNNotificationRequest fromNative(::UNNotificationRequest* request) {
  return {fromNative(request.content)};
}

UNNotification fromNative(::UNNotification* notification) {
  return {fromNative(notification.request)};
}

UNNotificationResponse fromNative(::UNNotificationResponse* response) {
  return {fromNative(response.notification), fromNative(response.actionIdentifier)};
}

AnyNotification notificationFromNative(id object) {
  if ([object isKindOfClass:[NSDictionary class]]) {
    return Value(fromNative(static_cast<NSDictionary*>(object)));
  }
  if ([object isKindOfClass:[::UNNotification class]]) {
    return fromNative(static_cast<::UNNotification*>(object));
  }
  if ([object isKindOfClass:[::UNNotificationResponse class]]) {
    return fromNative(static_cast<::UNNotificationResponse*>(object));
  }
  if ([object isKindOfClass:[::UNNotificationRequest class]]) {
    return fromNative(static_cast<::UNNotificationRequest*>(object));
  }
  return std::monostate();
}

UNNotificationServiceExtension::ContentHandler fromNative(HandlerBlock handler) {
  if (handler == nil) return nullptr;
  return BlockHandler{retained(autoreleased([handler copy]))};
}

HandlerBlock toNative(const UNNotificationServiceExtension::ContentHandler& handler) {
  const auto* block = handler.target<BlockHandler>();
  return block != nullptr ? autoreleased(block->block) : nil;
}

}  // namespace morvelune::apple
