#include "platform/apple/AppleServices.h"
#import "platform/apple/Conversion.h"

namespace morvelune::apple {
namespace {

class AppleLocale : public Locale {
 public:
  [[nodiscard]] std::optional<std::string> countryCode() const override {
    return optionalFromNative(
        static_cast<NSString*>([[NSLocale currentLocale] objectForKey:NSLocaleCountryCode]));
  }

  [[nodiscard]] std::optional<std::vector<std::string>> preferredLanguages() const override {
    NSArray* languages = [NSLocale preferredLanguages];
    if (languages == nil) return std::nullopt;
    std::vector<std::string> tags;
    for (NSString* each in languages) tags.push_back(fromNative(each));
    return tags;
  }

  [[nodiscard]] std::optional<std::string> currencyName(
      std::string_view localeIdentifier, std::string_view currencyCode) const override {
    NSString* code = toNative(currencyCode);
    NSLocale* locale = [NSLocale localeWithLocaleIdentifier:toNative(localeIdentifier)];
    NSString* name = [locale displayNameForKey:NSLocaleCurrencyCode value:code];
    // To the platform the name of an unknown code is none, an empty one or the code itself.
    if (name.length == 0 || [name isEqualToString:code]) return std::nullopt;
    return fromNative(name);
  }
};

}  // namespace

std::shared_ptr<Locale> makeLocale() {
  return std::make_shared<AppleLocale>();
}

}  // namespace morvelune::apple
