// What the library makes of answers that Apple's own operations may give and GNUstep's do not. Each
// test puts another implementation in an operation's place.
#include <gtest/gtest.h>

#include <atomic>

#include "Standins.h"
#include "morvelune/platform/Platform.h"
#import "platform/apple/Conversion.h"

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

using morvelune::Platform;
using morvelune::apple::autoreleased;

// Replaces a method until it goes out of scope.
class Replaced {
 public:
  template <typename Function>
  Replaced(Class owner, SEL selector, Function* with) : owner_(owner), selector_(selector) {
    original_ = StandinReplace(owner, selector, reinterpret_cast<IMP>(with));
  }
  Replaced(const Replaced&) = delete;
  Replaced& operator=(const Replaced&) = delete;
  ~Replaced() { StandinReplace(owner_, selector_, original_); }

 private:
  const Class owner_;
  const SEL selector_;
  IMP original_;
};

std::atomic<int> parsesOfUnencoded = 0;

// As in an app that is linked for iOS 17.
NSURL* encodeAndParse(id, SEL, NSString* text) {
  if ([text isEqual:@"https:/h/é b"]) ++parsesOfUnencoded;
  NSCharacterSet* kept = [NSCharacterSet
      characterSetWithCharactersInString:@"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                          "0123456789!$%&'()*+,-./:;=?@_~#[]"];
  return autoreleased([[NSURL alloc]
      initWithString:[text stringByAddingPercentEncodingWithAllowedCharacters:kept]]);
}

NSURL* trackingURL(NSString* url, NSString* display) {
  return [MVLPushHelpers trackingURLForAction:@"display"
                              forNotification:@{
                                @"mvl-tk" : @{@"url" : url, @"display" : display}
                              }];
}

TEST(PlatformsParserTest, DecidesWhatAnAddressIs) {
  EXPECT_EQ(trackingURL(@"https://h", @"é b"), nil) << "as in an older app";
  const Replaced replaced([NSURL class], @selector(URLWithString:), encodeAndParse);
  EXPECT_TRUE([trackingURL(@"https://h", @"é b").absoluteString isEqual:@"https:/h/%C3%A9%20b"]);
  EXPECT_EQ(parsesOfUnencoded, 1);
}

TEST(PlatformsParserTest, AnAddressThatItAcceptsIsKept) {
  NSURL* odd = autoreleased([[OddURL alloc] initWithString:@"http://h/"]);
  const auto url = morvelune::apple::fromNative(odd);
  ASSERT_TRUE(url.has_value());
  EXPECT_EQ(url->absoluteString(), "http://h/{é b}%zz");
  EXPECT_EQ(url->path(), "/{é b}%zz");
}

std::pair<BOOL, NSError*> nextMove;

BOOL moved(id, SEL, NSURL*, NSURL*, NSError** error) {
  *error = nextMove.second;
  return nextMove.first;
}

TEST(PlatformsFileManagerTest, TheErrorDecidesWhetherAMoveFailed) {
  NSError* failure = [NSError errorWithDomain:NSPOSIXErrorDomain
                                         code:28
                                     userInfo:@{NSLocalizedDescriptionKey : @"full"}];
  const Replaced replaced([[NSFileManager defaultManager] class],
                          @selector(moveItemAtURL:toURL:error:), moved);
  const auto file = morvelune::URL::fileURL("/a");
  nextMove = {NO, nil};
  EXPECT_FALSE(Platform::native()->fileManager->moveItem(file, file).has_value());
  nextMove = {YES, failure};
  const auto error = Platform::native()->fileManager->moveItem(file, file);
  EXPECT_TRUE(error && error->localizedDescription == "full");
}

NSString* nextName = nil;

NSString* displayName(id, SEL, id, id) {
  return nextName;
}

TEST(PlatformsLocaleTest, AnEmptyNameOfACurrencyIsNone) {
  const Replaced replaced([NSLocale class], @selector(displayNameForKey:value:), displayName);
  const std::pair<NSString*, std::optional<std::string>> names[] = {
      {nil, std::nullopt}, {@"", std::nullopt}, {@"$12", std::nullopt}, {@"euro", "euro"}};
  for (const auto& [name, wanted] : names) {
    nextName = name;
    EXPECT_EQ(Platform::native()->locale->currencyName("fr_FR", "$12"), wanted);
  }
}

}  // namespace
