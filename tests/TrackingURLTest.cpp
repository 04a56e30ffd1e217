#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "morvelune/MVLPushHelpers.h"
#include "support/ExposedExtension.h"
#include "support/InMemoryPlatform.h"

namespace morvelune::testing {
namespace {

Dictionary tracked(Dictionary descriptor) {
  return {{"mvl-tk", std::move(descriptor)}};
}

std::string displayURL(const AnyNotification& notification) {
  const auto url = MVLPushHelpers::trackingURLForAction("display", notification);
  return url ? url->absoluteString() : "none";
}

TEST(TrackingURLTest, JoinsFillsAndParses) {
  const Dictionary params{{"p", "1"}, {"blank", "a b"}, {"none", "MVLNullValue"}};
  const std::pair<Dictionary, const char*> cases[] = {
      {{{"url", "base/t"}, {"display", "d1"}, {"params", Dictionary()}}, "base/t/d1"},
      {{{"url", "base/t/"}, {"display", "d1"}}, "base/t/d1"},
      {{{"url", ""}, {"display", "d1"}}, "d1"},
      {{{"url", "https://h/t"}, {"display", "d?p=|p|"}, {"params", params}}, "https:/h/t/d?p=1"},
      {{{"url", "h/%7Cp%7c"}, {"display", "d"}, {"params", params}}, "h/1/d"},
      {{{"url", "h/|none|"}, {"display", "d"}, {"params", params}}, "h//d"},
      {{{"url", "h"}, {"display", "|blank|"}, {"params", params}}, "none"},    // no valid URL
      {{{"url", "h"}, {"display", "|unknown|"}, {"params", params}}, "none"},  // bars are not, too
      {{{"url", "h"}, {"display", "d"}, {"params", "no dictionary"}}, "h/d"},
      {{{"display", "d"}}, "none"},
      {{{"url", "h"}}, "none"},
      {{{"url", 1}, {"display", "d"}}, "none"},
      {{{"url", "h"}, {"display", nullptr}}, "none"},
  };
  const InMemoryPlatform memory;
  for (const auto& [descriptor, url] : cases) EXPECT_EQ(displayURL(tracked(descriptor)), url);
}

TEST(TrackingURLTest, ServesAnyActionOfAnyKindOfNotification) {
  const InMemoryPlatform memory;
  const Dictionary payload = tracked({{"url", "b"}, {"display", "d"}, {"dismiss", "x"}});
  const UNNotification notification{{std::make_shared<const UNNotificationContent>(
      UNNotificationContent::Fields{.userInfo = payload})}};
  const UNNotificationResponse response{notification, "tapped"};
  EXPECT_EQ(displayURL(response), "b/d");
  EXPECT_EQ(displayURL(notification.request), "b/d");
  EXPECT_EQ(MVLPushHelpers::trackingURLForAction("dismiss", response)->absoluteString(), "b/x");
  EXPECT_FALSE(MVLPushHelpers::trackingURLForAction("open", response));
  EXPECT_FALSE(MVLPushHelpers::trackingURLForAction(std::nullopt, response));
  EXPECT_FALSE(MVLPushHelpers::trackingURLForAction("display", Dictionary{{"mvl-tk", "b/d"}}));
  EXPECT_FALSE(MVLPushHelpers::trackingURLForAction("display", std::monostate()));
}

TEST(TrackingTaskTest, IsMadeCountedAndLoggedAndDoesNotKeepTheExtensionAlive) {
  InMemoryPlatform memory;
  auto extension = std::make_shared<ExposedExtension>();
  EXPECT_EQ(extension->trackingTaskForNotification(Dictionary{{"k2tid", "1"}}), nullptr);
  EXPECT_EQ(extension->internalOperationsCount(), 0U);
  EXPECT_TRUE(memory.log().empty());

  const auto task =
      extension->trackingTaskForNotification(tracked({{"url", "http://h/t"}, {"display", "d"}}));
  EXPECT_EQ(extension->internalOperationsCount(), 1U);
  EXPECT_EQ(memory.log(), std::vector<std::string>{"//--// track url: http:/h/t/d"});
  EXPECT_EQ(memory.network().made(), std::vector<std::string>{"http:/h/t/d"});
  EXPECT_TRUE(memory.network().started().empty());

  task->resume();
  const std::weak_ptr<ExposedExtension> weak = extension;
  extension.reset();
  EXPECT_TRUE(weak.expired());
  EXPECT_TRUE(memory.network().finish("http:/h/t/d"));  // finds nobody, does nothing
}

}  // namespace
}  // namespace morvelune::testing
