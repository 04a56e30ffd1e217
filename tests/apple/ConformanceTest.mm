// The Objective-C face against the table of what every face must answer.
#include <gtest/gtest.h>

#include "Departures.h"
#include "NativeJSON.h"
#include "Standins.h"
#include "support/InMemoryPlatform.h"

#import <MorveluneExtension/MVLNotificationServiceExtensionSubclass.h>
#import <MorveluneExtension/MorveluneExtension.h>

namespace {

using namespace morvelune::testing;

using morvelune::apple::autoreleased;
using nlohmann::json;

UNNotificationRequest* request(const json& given) {
  UNMutableNotificationContent* content = autoreleased([[UNMutableNotificationContent alloc] init]);
  if (given.contains("title")) content.title = native(given["title"]);
  if (given.contains("subtitle")) content.subtitle = native(given["subtitle"]);
  if (given.contains("body")) content.body = native(given["body"]);
  if (given.contains("userInfo")) content.userInfo = object(given["userInfo"]);
  return [UNNotificationRequest requestWithIdentifier:@"r" content:content trigger:nil];
}

UNNotification* notification(const json& given) {
  return autoreleased([[UNNotification alloc] initWithRequest:request(given)]);
}

id argument(const json& given) {
  if (given.is_null()) return nil;
  if (given.contains("$request")) return request(given["$request"]);
  if (given.contains("$notification")) return notification(given["$notification"]);
  if (!given.contains("$response")) return object(given);
  const json& response = given["$response"];
  return autoreleased([[UNNotificationResponse alloc]
      initWithNotification:notification(response)
          actionIdentifier:native(response["actionIdentifier"])]);
}

// The receiver of a selector: the text that the case names, else the class that has such a method,
// else an extension.
id targetOf(SEL selector, const json& receiver) {
  if (receiver.is_string()) return native(receiver);
  for (Class each in @[
         [MVLPushHelpers class], [MVLURLHelpers class], [MVLCommonHelpers class],
         [MVLNotificationContentExtension class]
       ]) {
    if ([each respondsToSelector:selector]) return each;
  }
  return autoreleased([[MVLNotificationServiceExtension alloc] init]);
}

void setArgument(NSInvocation* call, NSInteger index, id value) {
  if ([[call methodSignature] getArgumentTypeAtIndex:index][0] == '@') {
    [call setArgument:&value atIndex:index];
  } else {
    BOOL flag = [value boolValue];
    [call setArgument:&flag atIndex:index];
  }
}

// What a call returned; `returned` is the object, when it was one.
json resultOf(NSInvocation* call, __strong id& returned) {
  switch ([[call methodSignature] methodReturnType][0]) {
    case '@': {
      __unsafe_unretained id object = nil;
      [call getReturnValue:&object];
      returned = object;
      return jsonOf(returned);
    }
    case '{': {
      ::NSRange range{};
      [call getReturnValue:&range];
      if (range.location == static_cast<NSUInteger>(::NSNotFound)) {
        return {{"location", "NSNotFound"}};
      }
      return {{"location", range.location}, {"length", range.length}};
    }
    default: {
      BOOL flag = NO;
      [call getReturnValue:&flag];
      return static_cast<bool>(flag);
    }
  }
}

json invoke(const ConformanceCase& each, const std::vector<id>& arguments, __strong id& returned) {
  if (each.operation == "UNNotificationToDictionary") {
    return jsonOf(::UNNotificationToDictionary(arguments.at(0)));
  }
  if (each.operation == "FSign") {
    return jsonOf(::FSign([arguments.at(0) bytes], [arguments.at(1) unsignedIntegerValue],
                          [arguments.at(2) unsignedIntegerValue]));
  }
  const SEL selector = NSSelectorFromString(native(each.operation));
  const id target = targetOf(selector, each.receiver);
  NSMethodSignature* signature = [target methodSignatureForSelector:selector];
  if (signature == nil) return "no such method";
  NSInvocation* call = [NSInvocation invocationWithMethodSignature:signature];
  [call setTarget:target];
  [call setSelector:selector];
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    setArgument(call, static_cast<NSInteger>(i) + 2, arguments[i]);
  }
  [call invoke];
  return resultOf(call, returned);
}

id objectAt(const ConformancePath& path, const std::vector<id>& arguments) {
  id found = arguments.at(path.argument);
  for (const std::string& step : path.steps) {
    if ([found isKindOfClass:[UNNotificationResponse class]]) found = [found notification];
    if ([found isKindOfClass:[UNNotification class]]) found = [found request];
    if ([found isKindOfClass:[UNNotificationRequest class]]) {
      found = [[found content] userInfo];
    } else if ([found isKindOfClass:[NSArray class]]) {
      found = [found objectAtIndex:std::stoul(step)];
    } else {
      found = [found objectForKey:native(step)];
    }
  }
  return found;
}

TEST(AppleConformanceTest, EveryCaseOfTheTable) {
  for (const ConformanceCase& each : conformanceCases()) {
    if (departures().contains(each.rule)) continue;
    @autoreleasepool {
      InMemoryPlatform memory;
      prepare(memory, each);
      std::vector<id> arguments;
      for (const json& given : each.arguments) arguments.push_back(argument(given));
      id returned = nil;
      const json result = invoke(each, arguments, returned);
      EXPECT_EQ(fault(each, result, memory.log()), "") << each.text;
      if (each.same) EXPECT_EQ(returned, objectAt(*each.same, arguments)) << each.text;
    }
  }
}

}  // namespace
