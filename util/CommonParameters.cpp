#include "util/CommonParameters.h"

#include <limits>
#include <optional>

#include "morvelune/MVLCommonHelpers.h"
#include "morvelune/UIScreenMorvelune.h"

namespace morvelune {
namespace {

// Truncated toward zero. A NaN gives 0, and what no "%d" can show gives the nearest number that
// it can, as the platform's own conversion does.
int wholePoints(double points) {
  if (!(points > std::numeric_limits<int>::min())) {
    return points == points ? std::numeric_limits<int>::min() : 0;
  }
  if (points >= std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
  return static_cast<int>(points);
}

std::string identifierForVendor(const Platform& platform) {
  return platform.device->identifierForVendor().value_or("");
}

std::string nothing(const Platform& /*platform*/) {
  return "";
}

std::string screenSize(const Platform& platform) {
  const auto screen = platform.device->mainScreen();
  const Size size = screen ? screen->bounds() : Size{};
  return std::to_string(wholePoints(size.width)) + "," + std::to_string(wholePoints(size.height));
}

std::string orientationName(const Platform& platform) {
  switch (mvl_currentOrientation(platform.device->mainScreen())) {
    case UIInterfaceOrientationPortrait:
    case UIInterfaceOrientationPortraitUpsideDown:
      return "portrait";
    default:
      return "landscape";
  }
}

std::string countryCode(const Platform& /*platform*/) {
  return MVLCommonHelpers::countryCode();
}

std::string firstLanguage(const Platform& platform) {
  const auto languages = platform.locale->preferredLanguages();
  return languages && !languages->empty() ? languages->front() : "";
}

}  // namespace

std::span<const CommonParameter> commonParameters() {
  static constexpr CommonParameter all[] = {{"idfv", identifierForVendor}, {"uid", nothing},
                                            {"idMember", nothing},         {"s", screenSize},
                                            {"o", orientationName},        {"country", countryCode},
                                            {"lang", firstLanguage}};
  return all;
}

}  // namespace morvelune
