#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <tuple>

#include "morvelune/MVLCommonHelpers.h"
#include "morvelune/MVLURLHelpers.h"
#include "morvelune/UIScreenMorvelune.h"
#include "support/InMemoryPlatform.h"

namespace morvelune::testing {
namespace {

std::shared_ptr<const Screen> screenOf(Size size, std::optional<Point> fixedOrigin) {
  return std::make_shared<const InMemoryScreen>(size, fixedOrigin);
}

TEST(CommonURLParametersTest, TellWhatTheDeviceAndLocaleSayNow) {
  InMemoryPlatform memory;
  const Dictionary unknown{{"idfv", ""},       {"uid", ""},     {"idMember", ""}, {"s", "0,0"},
                           {"o", "landscape"}, {"country", ""}, {"lang", ""}};
  EXPECT_EQ(MVLURLHelpers::commonURLParameters(), unknown);
  memory.device().vendor = "E621E1F8";
  memory.device().screen = screenOf({375.9, 812.0}, Point{0, 0});
  memory.locale().country = "FR";
  memory.locale().languages = {"fr-FR", "en"};
  const Dictionary known{{"idfv", "E621E1F8"},
                         {"s", "375,812"},
                         {"o", "portrait"},
                         {"country", "FR"},
                         {"lang", "fr-FR"}};
  EXPECT_EQ(MVLURLHelpers::commonURLParameters(), unknown.with(known));
  EXPECT_EQ(MVLCommonHelpers::countryCode(), "FR");
  memory.locale().languages.emplace();  // an empty list
  EXPECT_EQ(MVLURLHelpers::commonURLParameters().string("lang"), "");
}

TEST(CommonURLParametersTest, ScreenSizesAreTruncatedTowardZero) {
  const double infinity = std::numeric_limits<double>::infinity();
  const std::pair<Size, const char*> cases[] = {{{-0.9, -1.9}, "0,-1"},
                                                {{NAN, 0.999}, "0,0"},
                                                {{infinity, -infinity}, "2147483647,-2147483648"},
                                                {{1e300, 2147483646.5}, "2147483647,2147483646"}};
  InMemoryPlatform memory;
  for (const auto& [size, text] : cases) {
    memory.device().screen = screenOf(size, std::nullopt);
    EXPECT_EQ(MVLURLHelpers::commonURLParameters().string("s"), text);
  }
}

TEST(CommonURLParametersTest, OrientationIsToldFromTheFixedOrigin) {
  const std::tuple<std::optional<Point>, int, const char*> cases[] = {
      {Point{0, 0}, 1, "portrait"},     {Point{-0.0, 0}, 1, "portrait"},
      {Point{375, 812}, 2, "portrait"}, {Point{NAN, -1}, 2, "portrait"},
      {Point{0, 375}, 3, "landscape"},  {Point{0, NAN}, 3, "landscape"},
      {Point{812, 0}, 4, "landscape"},  {Point{NAN, 0}, 4, "landscape"},
      {std::nullopt, 0, "landscape"}};
  InMemoryPlatform memory;
  for (const auto& [origin, code, name] : cases) {
    memory.device().screen = screenOf({1, 1}, origin);
    EXPECT_EQ(mvl_currentOrientation(memory.device().screen), code);
    EXPECT_EQ(MVLURLHelpers::commonURLParameters().string("o"), name) << code;
  }
  EXPECT_EQ(mvl_currentOrientation(nullptr), 0);
}

}  // namespace
}  // namespace morvelune::testing
