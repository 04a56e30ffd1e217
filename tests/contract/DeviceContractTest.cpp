#include <gtest/gtest.h>

#include "platform/linux/LinuxServices.h"
#include "support/InMemoryPlatform.h"

namespace morvelune {
namespace {

using namespace std::string_literals;
using Languages = std::vector<std::string>;

// A platform whose device and locale are as a profile says.
using DevicePlatform = std::pair<std::shared_ptr<Device>, std::shared_ptr<Locale>>;

DevicePlatform linuxPlatform(const DeviceProfile& profile) {
  return {makeLinuxDevice(profile), makeLinuxLocale(profile)};
}

DevicePlatform inMemoryPlatform(const DeviceProfile& profile) {
  auto device = std::make_shared<testing::InMemoryDevice>();
  device->vendor = profile.identifierForVendor;
  if (profile.screen) {
    device->screen = std::make_shared<testing::InMemoryScreen>(*profile.screen, std::nullopt);
  }
  auto locale = std::make_shared<testing::InMemoryLocale>();
  if (profile.country != "") locale->country = profile.country;
  locale->languages = profile.languages;
  return {device, locale};
}

class DeviceContract : public ::testing::TestWithParam<DevicePlatform (*)(const DeviceProfile&)> {};

INSTANTIATE_TEST_SUITE_P(All, DeviceContract, ::testing::Values(&linuxPlatform, &inMemoryPlatform));

TEST_P(DeviceContract, TellsNothingWhenNothingIsKnown) {
  const auto [device, locale] = GetParam()({.country = "", .languages = Languages{}});
  EXPECT_EQ(device->identifierForVendor(), std::nullopt);
  EXPECT_EQ(device->mainScreen(), nullptr);
  EXPECT_EQ(locale->countryCode(), std::nullopt);
  EXPECT_EQ(locale->preferredLanguages(), Languages{});
}

TEST_P(DeviceContract, TellsWhatIsKnown) {
  const auto [device, locale] = GetParam()({.identifierForVendor = "0f8e-as-given",
                                            .screen = Size{375.9, 812},
                                            .country = "FR",
                                            .languages = Languages{"fr-FR", "en"}});
  EXPECT_EQ(device->identifierForVendor(), "0f8e-as-given");
  const auto [width, height] = device->mainScreen()->bounds();
  EXPECT_TRUE(width == 375.9 && height == 812) << width << " " << height;
  EXPECT_TRUE(device->isOperatingSystemAtLeastVersion({9, 0, 0}));
  EXPECT_EQ(locale->countryCode(), "FR");
  EXPECT_EQ(locale->preferredLanguages(), (Languages{"fr-FR", "en"}));
}

TEST_P(DeviceContract, NamesCurrencies) {
  const auto locale = GetParam()({}).second;
  EXPECT_EQ(locale->currencyName("fr_FR", "EUR"), "euro");
  EXPECT_EQ(locale->currencyName("fr_FR", "eUr"), "euro");
  EXPECT_EQ(locale->currencyName("fr_FR", "FRF"), "franc français");  // historical
  // The last one is "EUR" in the low bytes of its UTF-16.
  for (const auto& code :
       {""s, "EU"s, "EURO"s, "XQZ"s, "EU\0"s, "E\u00DC"s, "\u0145\u0155\u0152"s}) {
    EXPECT_EQ(locale->currencyName("fr_FR", code), std::nullopt) << code;
  }
}

}  // namespace
}  // namespace morvelune
