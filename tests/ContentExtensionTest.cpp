#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>

#include "morvelune/MVLNotificationContentExtension.h"

namespace morvelune {
namespace {

UNNotificationResponse responseTo(const Dictionary& payload, const std::string& action) {
  return {{{std::make_shared<const UNNotificationContent>(
              UNNotificationContent::Fields{.userInfo = payload})}},
          action};
}

Dictionary payloadWith(const Dictionary& button) {
  return {{"k2tid", "1"}, {"k2tb", Array{button}}, {"mine", 5}};
}

bool delays(const UNNotificationResponse& response) {
  return MVLNotificationContentExtension::shouldDelayDismissForNotificationResponse(response);
}

TEST(ContentExtensionTest, DelayDismissReadsAsABoolean) {
  const std::pair<Value, bool> cases[] = {
      {true, true},
      {false, false},
      {1, true},
      {-1, true},
      {0, false},
      {0.5, true},
      {0.0, false},
      {"YES", true},
      {"yes", true},
      {"True", true},
      {"t", true},
      {"1", true},
      {"9x", true},
      {"0", false},
      {"no", false},
      {"", false},
      {"+t", true},
      {"-001", true},
      {" \t\n+00Y", true},
      {"000", false},
      {"+-1", false},
      {"+ 1", false},
      {"0 1", false},
      {"x1", false},
      {nullptr, false},
      {Array{1}, false},
      {Dictionary{{"a", 1}}, false},
      {std::numeric_limits<std::uint64_t>::max(), true},
  };
  for (const auto& [value, expected] : cases) {
    const auto payload = payloadWith({{"bid", "b1"}, {"delay-dismiss", value}});
    EXPECT_EQ(delays(responseTo(payload, "b1")), expected)
        << value.string().value_or(std::to_string(static_cast<int>(value.type())));
    EXPECT_FALSE(delays(responseTo(payload, "b2")));
    EXPECT_FALSE(delays(responseTo(payload.without(std::vector<std::string_view>{"k2tid"}), "b1")));
  }
  EXPECT_FALSE(delays(responseTo(payloadWith({{"bid", "b1"}}), "b1")));
}

TEST(ContentExtensionTest, AbsentAndEmptyAreDifferentAnswers) {
  using Extension = MVLNotificationContentExtension;
  const Dictionary params{{"x", 1}};
  const Dictionary payload = payloadWith({{"bid", "b1"}, {"ccp", params}});
  const Dictionary foreign = payload.without(std::vector<std::string_view>{"k2tid"});
  // The first argument plays no part.
  for (const std::optional<std::string>& ignored :
       {std::optional<std::string>(), std::optional<std::string>("b2")}) {
    EXPECT_TRUE(
        Extension::actionCustomParams(ignored, responseTo(payload, "b1"))->isSameObject(params));
    EXPECT_EQ(Extension::actionCustomParams(ignored, responseTo(payload, "b2")), Dictionary());
    EXPECT_EQ(
        Extension::actionCustomParams(ignored, responseTo(payloadWith({{"bid", "b1"}}), "b1")),
        Dictionary());
    EXPECT_EQ(Extension::actionCustomParams(ignored, responseTo(foreign, "b1")), std::nullopt);
  }
  EXPECT_EQ(Extension::customParamsForNotification(responseTo(payload, "b1")),
            (Dictionary{{"mine", 5}}));
  EXPECT_EQ(Extension::customParamsForNotification(Dictionary{{"k2tid", "1"}}), Dictionary());
  EXPECT_EQ(Extension::customParamsForNotification(foreign), std::nullopt);
  EXPECT_EQ(Extension::customParamsForNotification(std::monostate()), std::nullopt);
}

TEST(ContentExtensionTest, ASystemActionNeverStandsForAButton) {
  for (const char* action :
       {UNNotificationDefaultActionIdentifier, UNNotificationDismissActionIdentifier}) {
    const auto response = responseTo(
        payloadWith({{"bid", action}, {"delay-dismiss", true}, {"ccp", Dictionary{{"x", 1}}}}),
        action);
    EXPECT_FALSE(delays(response));
    EXPECT_EQ(MVLNotificationContentExtension::actionCustomParams("b1", response), std::nullopt);
    EXPECT_TRUE(MVLNotificationContentExtension::customParamsForNotification(response));
  }
}

}  // namespace
}  // namespace morvelune
