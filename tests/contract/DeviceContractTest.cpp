#include "contract/Subject.h"

namespace morvelune::testing {
namespace {

using namespace std::string_literals;

class DeviceContract : public ::testing::TestWithParam<Subject> {};
class LocaleContract : public ::testing::TestWithParam<Subject> {};

INSTANTIATE_CONTRACT(DeviceContract, device);
INSTANTIATE_CONTRACT(LocaleContract, locale);

TEST_P(DeviceContract, TellsWhatIsKnown) {
  const DeviceState state{
      "E621E1F8-C36C-495A-93FC-0C247A3E6E5F", Size{375.9, 812}, "FR", {"fr", "en"}};
  for (const DeviceState& each : {DeviceState{}, state}) {
    const auto [device, locale] = GetParam().device(each);
    EXPECT_EQ(device->identifierForVendor(), each.vendor);
    const auto screen = device->mainScreen();
    EXPECT_EQ(screen ? screen->bounds().width : 0, each.screen ? 375.9 : 0);
    EXPECT_EQ(screen ? screen->bounds().height : 0, each.screen ? 812 : 0);
    EXPECT_TRUE(device->isOperatingSystemAtLeastVersion({9, 0, 0}));
    if (GetParam().departures.contains("the locale is as the test says")) continue;
    EXPECT_EQ(locale->countryCode(), each.country);
    EXPECT_EQ(locale->preferredLanguages(), each.languages);
  }
}

TEST_P(LocaleContract, NamesCurrencies) {
  NEEDS_RULE("currencies have names");
  const auto locale = GetParam().locale();
  EXPECT_EQ(locale->currencyName("fr_FR", "EUR"), "euro");
  EXPECT_EQ(locale->currencyName("fr_FR", "eUr"), "euro");
  EXPECT_EQ(locale->currencyName("fr_FR", "FRF"), "franc français");  // historical
  // The last one is "EUR" in the low bytes of its UTF-16.
  for (const auto& code :
       {""s, "EU"s, "EURO"s, "XQZ"s, "$12"s, "\n12"s, "EU\0"s, "E\u00DC"s, "\u0145\u0155\u0152"s}) {
    EXPECT_EQ(locale->currencyName("fr_FR", code), std::nullopt) << code;
  }
}

}  // namespace
}  // namespace morvelune::testing
