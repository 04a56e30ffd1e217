// What the library makes of answers that Apple's own operations may give and GNUstep's do not. Each
// test puts another implementation in an operation's place.
#include <gtest/gtest.h>
#include <objc/runtime.h>

#include <atomic>

#include "Delivered.h"
#include "morvelune/platform/Platform.h"
#import "platform/apple/Conversion.h"
#include "support/LoopbackOrigin.h"
#include "support/Media.h"

#import <MorveluneExtension/MorveluneExtension.h>

// A URL whose text no parser of RFC 2396 would take.
@interface OddURL : NSURL
@end

@implementation OddURL
- (NSString*)absoluteString {
  return @"http://h/{é b}%zz";
}
@end

namespace {

using namespace morvelune::testing;

using morvelune::Platform;

// Replaces a method until it goes out of scope.
class Replaced {
 public:
  template <typename Function>
  Replaced(Method method, Function* with)
      : method_(method), original_(method_setImplementation(method, reinterpret_cast<IMP>(with))) {}
  Replaced(const Replaced&) = delete;
  Replaced& operator=(const Replaced&) = delete;
  ~Replaced() { method_setImplementation(method_, original_); }

 private:
  const Method method_;
  const IMP original_;
};

using ParseURL = NSURL*(id, SEL, NSString*);
ParseURL* originalParser = nullptr;
std::atomic<int> parsesOfUnencoded = 0;

// As in an app that is linked for iOS 17.
NSURL* encodeAndParse(id self, SEL selector, NSString* text) {
  if ([text isEqual:@"https:/h/é b"]) ++parsesOfUnencoded;
  NSCharacterSet* kept = [NSCharacterSet
      characterSetWithCharactersInString:@"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                          "0123456789!$%&'()*+,-./:;=?@_~#[]"];
  return originalParser(self, selector,
                        [text stringByAddingPercentEncodingWithAllowedCharacters:kept]);
}

Method parser() {
  const Method method = class_getClassMethod([NSURL class], @selector(URLWithString:));
  if (!originalParser) originalParser = (ParseURL*)method_getImplementation(method);
  return method;
}

NSURL* trackingURL(NSString* url, NSString* display) {
  return [MVLPushHelpers trackingURLForAction:@"display"
                              forNotification:@{
                                @"mvl-tk" : @{@"url" : url, @"display" : display}
                              }];
}

TEST(PlatformsParserTest, DecidesWhatAnAddressIs) {
  EXPECT_EQ(trackingURL(@"https://h", @"é b"), nil) << "as in an older app";
  parsesOfUnencoded = 0;
  const Replaced replaced(parser(), encodeAndParse);
  EXPECT_TRUE([trackingURL(@"https://h", @"é b").absoluteString isEqual:@"https:/h/%C3%A9%20b"]);
  EXPECT_EQ(parsesOfUnencoded, 1);
}

TEST(PlatformsParserTest, AnAddressThatItAcceptsIsKept) {
  NSURL* odd = morvelune::apple::autoreleased([[OddURL alloc] initWithString:@"http://h/"]);
  const auto url = morvelune::apple::fromNative(odd);
  ASSERT_TRUE(url.has_value());
  EXPECT_EQ(url->absoluteString(), "http://h/{é b}%zz");
  EXPECT_EQ(url->path(), "/{é b}%zz");
}

TEST(PlatformsParserTest, WhatItEncodesIsFetched) {
  LoopbackOrigin origin;
  origin.serve("/%C3%A9.png", {.body = pngBytes()});
  const auto address = [&origin](const char* path) {
    return [NSString stringWithUTF8String:origin.url(path).c_str()];
  };
  NSDictionary* userInfo = @{
    @"k2tid" : @"1",
    @"mvl-tk" :
        @{@"url" : address("/track"), @"display" : @"d?p=|p|", @"params" : @{@"p" : @"a b"}},
    @"mvl-atts" : @[ @{@"att-id" : @"a", @"att-url" : address("/é.png")} ]
  };
  const Replaced replaced(parser(), encodeAndParse);
  Delivered delivered;
  MVLNotificationServiceExtension* extension =
      morvelune::apple::autoreleased([[MVLNotificationServiceExtension alloc] init]);
  [extension didReceiveNotificationRequest:requestOf(userInfo)
                        withContentHandler:delivered.handler()];
  EXPECT_EQ(delivered.wait(1).attachments.count, 1U);
  std::set<std::string> targets;
  for (const auto& request : origin.requests()) targets.insert(request.target);
  EXPECT_EQ(targets, (std::set<std::string>{"/%C3%A9.png", "/track/d?p=a%20b"}));
}

struct Move {
  BOOL succeeds;
  NSError* error;
};

Move nextMove;

BOOL moved(id, SEL, NSURL*, NSURL*, NSError** error) {
  *error = nextMove.error;
  return nextMove.succeeds;
}

TEST(PlatformsFileManagerTest, TheErrorDecidesWhetherAMoveFailed) {
  NSError* failure = [NSError errorWithDomain:NSPOSIXErrorDomain
                                         code:28
                                     userInfo:@{NSLocalizedDescriptionKey : @"full"}];
  const Replaced replaced(class_getInstanceMethod([[NSFileManager defaultManager] class],
                                                  @selector(moveItemAtURL:toURL:error:)),
                          moved);
  const auto from = morvelune::URL::fileURL("/a");
  const auto to = morvelune::URL::fileURL("/b");
  for (const Move& each : {Move{YES, nil}, Move{NO, nil}, Move{YES, failure}, Move{NO, failure}}) {
    nextMove = each;
    const auto error = Platform::native()->fileManager->moveItem(from, to);
    EXPECT_EQ(error.has_value(), each.error != nil) << "success: " << int{each.succeeds};
    if (error) EXPECT_EQ(error->localizedDescription, "full");
  }
}

NSString* nextName = nil;

NSString* displayName(id, SEL, id, id) {
  return nextName;
}

TEST(PlatformsLocaleTest, AnEmptyNameOfACurrencyIsNone) {
  const Replaced replaced(
      class_getInstanceMethod([NSLocale class], @selector(displayNameForKey:value:)), displayName);
  const std::pair<NSString*, std::optional<std::string>> names[] = {
      {nil, std::nullopt}, {@"", std::nullopt}, {@"$12", std::nullopt}, {@"euro", "euro"}};
  for (const auto& [name, wanted] : names) {
    nextName = name;
    EXPECT_EQ(Platform::native()->locale->currencyName("fr_FR", "$12"), wanted);
  }
}

}  // namespace
