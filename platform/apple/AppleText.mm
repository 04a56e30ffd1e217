#include <CoreFoundation/CoreFoundation.h>

#include "platform/apple/AppleServices.h"
#import "platform/apple/Conversion.h"

namespace morvelune::apple {
namespace {

class AppleText : public Text {
 public:
  [[nodiscard]] NSRange rangeIgnoringCase(std::string_view pattern,
                                          std::string_view text) const override {
    NSString* searched = toNative(text);
    return fromNative([searched rangeOfString:toNative(pattern)
                                      options:NSCaseInsensitiveSearch | NSLiteralSearch],
                      searched);
  }

  [[nodiscard]] std::string caseFolded(std::string_view text) const override {
    return fromNative([toNative(text) stringByFoldingWithOptions:NSCaseInsensitiveSearch
                                                          locale:nil]);
  }

  [[nodiscard]] bool matches(std::string_view text, std::string_view expression) const override {
    @try {
      return [[NSPredicate predicateWithFormat:@"SELF MATCHES %@", toNative(expression)]
          evaluateWithObject:toNative(text)];
    } @catch (NSException*) {  // which the platform raises for a bad expression
      return false;
    }
  }

  [[nodiscard]] double doubleValue(std::string_view text) const override {
    return [toNative(text) doubleValue];
  }

  [[nodiscard]] std::string fixedNotation(double number) const override {
    NSString* text = [NSString stringWithFormat:@"%lf", number];
    return fromNative(text);
  }

  [[nodiscard]] std::string addingPercentEncodingForQuery(std::string_view text) const override {
    return fromNative([toNative(text)
        stringByAddingPercentEncodingWithAllowedCharacters:[NSCharacterSet
                                                               URLQueryAllowedCharacterSet]]);
  }

  [[nodiscard]] std::string addingPercentEscapes(std::string_view text) const override {
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdeprecated-declarations"  // called before iOS 9 only
    NSString* escaped = autoreleasedFromCoreFoundation(CFURLCreateStringByAddingPercentEscapes(
        kCFAllocatorDefault, coreFoundation<CFStringRef>(toNative(text)), nullptr,
        coreFoundation<CFStringRef>(@"!*'();:@&=+$,/?%#[]"), kCFStringEncodingUTF8));
#pragma clang diagnostic pop
    return fromNative(escaped);
  }

  [[nodiscard]] std::optional<std::string> removingPercentEncoding(
      std::string_view text) const override {
    return optionalFromNative([toNative(text) stringByRemovingPercentEncoding]);
  }
};

}  // namespace

std::shared_ptr<Text> makeText() {
  return std::make_shared<AppleText>();
}

}  // namespace morvelune::apple
