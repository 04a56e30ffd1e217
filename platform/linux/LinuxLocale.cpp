#include <unicode/locid.h>
#include <unicode/ucurr.h>
#include <unicode/unistr.h>

#include "platform/linux/LinuxServices.h"

namespace morvelune {
namespace {

class LinuxLocale : public Locale {
 public:
  explicit LinuxLocale(const DeviceProfile& profile)
      : country_(profile.country), languages_(profile.languages) {}

  [[nodiscard]] std::optional<std::string> countryCode() const override {
    const std::string country = country_.value_or(icu::Locale::getDefault().getCountry());
    return country.empty() ? std::nullopt : std::optional(country);
  }

  // The process's locale without its variant, so that "C", which ICU names en_US_POSIX, is "en-US".
  [[nodiscard]] std::optional<std::vector<std::string>> preferredLanguages() const override {
    if (languages_) return languages_;
    const icu::Locale& locale = icu::Locale::getDefault();
    std::string tag = locale.getLanguage();
    if (tag.empty()) return std::nullopt;
    for (const std::string_view part : {locale.getScript(), locale.getCountry()}) {
      if (!part.empty()) (tag += '-') += part;
    }
    return std::vector{tag};
  }

  [[nodiscard]] std::optional<std::string> currencyName(
      std::string_view localeIdentifier, std::string_view currencyCode) const override {
    // ICU would cut what is longer and take "EURO" for "EUR".
    if (currencyCode.size() != 3) return std::nullopt;
    icu::UnicodeString code = icu::UnicodeString::fromUTF8(currencyCode);
    UErrorCode status = U_ZERO_ERROR;
    std::int32_t length = 0;
    const char16_t* name =
        ucurr_getName(code.getTerminatedBuffer(), std::string(localeIdentifier).c_str(),
                      UCURR_LONG_NAME, nullptr, &length, &status);
    // With this warning ICU gives the code itself, or a name in another language. For what begins
    // with a character that no code has, such as "$12", it gives an empty name and no warning.
    if (U_FAILURE(status) || status == U_USING_DEFAULT_WARNING || length == 0) return std::nullopt;
    std::string text;
    return icu::UnicodeString(name, length).toUTF8String(text);
  }

 private:
  const std::optional<std::string> country_;
  const std::optional<std::vector<std::string>> languages_;
};

}  // namespace

std::shared_ptr<Locale> makeLinuxLocale(const DeviceProfile& profile) {
  return std::make_shared<LinuxLocale>(profile);
}

}  // namespace morvelune
