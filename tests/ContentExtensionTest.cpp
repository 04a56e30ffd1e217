#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "morvelune/MVLNotificationContentExtension.h"

namespace morvelune {
namespace {

using Extension = MVLNotificationContentExtension;

UNNotificationResponse responseTo(const Dictionary& payload, const std::string& action) {
  return {{{std::make_shared<const UNNotificationContent>(
              UNNotificationContent::Fields{.userInfo = payload})}},
          action};
}

Dictionary payloadWith(const Dictionary& button) {
  return {{"k2tid", "1"}, {"k2tb", Array{button}}, {"mine", 5}};
}

Dictionary foreign(const Dictionary& payload) {
  return payload.without(std::vector<std::string_view>{"k2tid"});
}

bool delays(const UNNotificationResponse& response) {
  return Extension::shouldDelayDismissForNotificationResponse(response);
}

TEST(ContentExtensionTest, DelayDismissReadsAsABoolean) {
  const Value yes[] = {true,  1,     -1,     0.5,        std::numeric_limits<std::uint64_t>::max(),
                       "YES", "yes", "True", "t",        "1",
                       "9x",  "+t",  "-001", " \t\n+00Y"};
  const Value no[] = {false, 0,     0.0,   "0",  "no",    "",       "000",
                      "+-1", "+ 1", "0 1", "x1", nullptr, Array{1}, Dictionary{{"a", 1}}};
  const auto delayed = [](const Value& value) {
    return delays(responseTo(payloadWith({{"bid", "b1"}, {"delay-dismiss", value}}), "b1"));
  };
  for (const Value& value : yes) EXPECT_TRUE(delayed(value)) << value.string().value_or("other");
  for (const Value& value : no) EXPECT_FALSE(delayed(value)) << value.string().value_or("other");
  const Dictionary payload = payloadWith({{"bid", "b1"}, {"delay-dismiss", true}});
  EXPECT_FALSE(delays(responseTo(payload, "b2")));
  EXPECT_FALSE(delays(responseTo(foreign(payload), "b1")));
  EXPECT_FALSE(delays(responseTo(payloadWith({{"bid", "b1"}}), "b1")));
}

TEST(ContentExtensionTest, AbsentAndEmptyAreDifferentAnswers) {
  const Dictionary params{{"x", 1}};
  const Dictionary payload = payloadWith({{"bid", "b1"}, {"ccp", params}});
  const auto response = responseTo(payload, "b1");
  // The first argument plays no part.
  for (const auto& ignored : {std::optional<std::string>(), std::optional<std::string>("b2")}) {
    EXPECT_TRUE(Extension::actionCustomParams(ignored, response)->isSameObject(params));
    for (const auto& without :
         {responseTo(payload, "b2"), responseTo(payloadWith({{"bid", "b1"}}), "b1")}) {
      EXPECT_EQ(Extension::actionCustomParams(ignored, without), Dictionary());
    }
    EXPECT_FALSE(Extension::actionCustomParams(ignored, responseTo(foreign(payload), "b1")));
  }
  EXPECT_EQ(Extension::customParamsForNotification(response), (Dictionary{{"mine", 5}}));
  EXPECT_EQ(Extension::customParamsForNotification(Dictionary{{"k2tid", "1"}}), Dictionary());
  EXPECT_EQ(Extension::customParamsForNotification(foreign(payload)), std::nullopt);
  EXPECT_EQ(Extension::customParamsForNotification(std::monostate()), std::nullopt);
}

TEST(ContentExtensionTest, ASystemActionNeverStandsForAButton) {
  for (const char* action :
       {UNNotificationDefaultActionIdentifier, UNNotificationDismissActionIdentifier}) {
    const Dictionary button{{"bid", action}, {"delay-dismiss", true}, {"ccp", Dictionary()}};
    const auto response = responseTo(payloadWith(button), action);
    EXPECT_FALSE(delays(response));
    EXPECT_EQ(Extension::actionCustomParams("b1", response), std::nullopt);
    EXPECT_TRUE(Extension::customParamsForNotification(response));
  }
}

}  // namespace
}  // namespace morvelune
