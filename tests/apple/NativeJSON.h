// JSON as the platform's objects, and back.
#pragma once

#import "platform/apple/Ownership.h"
#include "support/Conformance.h"

#import <Foundation/Foundation.h>

namespace morvelune::testing {

// Read behind a letter, because a reader may drop a leading U+FEFF.
inline NSString* native(const std::string& text) {
  const std::string guarded = "." + text;
  NSString* string = apple::autoreleased([[NSString alloc] initWithBytes:guarded.data()
                                                                  length:guarded.size()
                                                                encoding:NSUTF8StringEncoding]);
  return [string substringFromIndex:1];
}

inline id object(const nlohmann::json& given) {
  if (given.is_null()) return [NSNull null];
  if (given.is_boolean()) return [NSNumber numberWithBool:given.get<bool>()];
  if (given.is_number_unsigned()) return [NSNumber numberWithUnsignedLongLong:given];
  if (given.is_number_integer()) return [NSNumber numberWithLongLong:given];
  if (given.is_number()) return [NSNumber numberWithDouble:given];
  if (given.is_string()) return native(given);
  if (given.contains("$data")) {
    const std::string bytes = bytesOfData(given);
    return [NSData dataWithBytes:bytes.data() length:bytes.size()];
  }
  if (given.is_object()) {
    NSMutableDictionary* all = [NSMutableDictionary dictionary];
    for (const auto& [key, each] : given.items()) [all setObject:object(each) forKey:native(key)];
    return all;
  }
  NSMutableArray* all = [NSMutableArray array];
  for (const auto& each : given) [all addObject:object(each)];
  return all;
}

inline nlohmann::json jsonOf(id result) {
  if (result == nil || result == [NSNull null]) return nullptr;
  if ([result isKindOfClass:[NSURL class]]) result = [result absoluteString];
  if ([result isKindOfClass:[NSString class]]) return std::string([result UTF8String]);
  if ([result isKindOfClass:[NSData class]]) {
    return dataOfBytes({static_cast<const std::byte*>([result bytes]), [result length]});
  }
  if ([result isKindOfClass:[NSNumber class]]) {
    const std::string type = [result objCType];
    if (type == "c" || type == "C" || type == "B") return static_cast<bool>([result boolValue]);
    if (type == "Q") return [result unsignedLongLongValue];
    return type == "d" || type == "f" ? nlohmann::json([result doubleValue])
                                      : nlohmann::json([result longLongValue]);
  }
  if ([result isKindOfClass:[NSArray class]]) {
    auto all = nlohmann::json::array();
    for (id each in result) all.push_back(jsonOf(each));
    return all;
  }
  auto all = nlohmann::json::object();
  for (NSString* key in result) all[[key UTF8String]] = jsonOf([result objectForKey:key]);
  return all;
}

}  // namespace morvelune::testing
