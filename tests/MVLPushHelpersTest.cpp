#include "morvelune/MVLPushHelpers.h"

#include <gtest/gtest.h>

#include <memory>

#include "morvelune/UNNotificationToDictionary.h"

namespace morvelune {
namespace {

UNNotification notificationWith(UNNotificationContent::Fields fields) {
  return {{std::make_shared<const UNNotificationContent>(std::move(fields))}};
}

TEST(MVLPushHelpersTest, BuildsThePayloadOfADeliveredNotification) {
  const Dictionary texts{{"body", "B"}, {"title", "T"}, {"subtitle", ""}};
  const Dictionary made{{"aps", Dictionary{{"alert", texts}}}};
  for (const Dictionary& extra : {Dictionary(), Dictionary{{"x", 1}}}) {
    EXPECT_EQ(UNNotificationToDictionary(
                  notificationWith({.title = "T", .body = "B", .userInfo = extra})),
              made.with(extra));
  }
  // A section of its own replaces the whole one that was made up.
  const Dictionary own{{"aps", Dictionary{{"badge", 1}}}, {"k2tid", "1"}};
  EXPECT_EQ(UNNotificationToDictionary(notificationWith({.title = "T", .userInfo = own})), own);
}

TEST(MVLPushHelpersTest, FindsThePayloadOfAnything) {
  const Dictionary payload{{"k2tid", "1"}};
  const UNNotification notification = notificationWith({.title = "T", .userInfo = payload});
  EXPECT_TRUE(MVLPushHelpers::userInfoFromNotification(payload).isSameObject(payload));
  EXPECT_EQ(MVLPushHelpers::userInfoFromNotification(notification),
            UNNotificationToDictionary(notification));
  EXPECT_EQ(MVLPushHelpers::userInfoFromNotification(UNNotificationResponse{notification, "a"}),
            UNNotificationToDictionary(notification));
  EXPECT_TRUE(MVLPushHelpers::userInfoFromNotification(notification.request).isSameObject(payload));
}

TEST(MVLPushHelpersTest, WhatIsNoNotificationHasAnEmptyPayload) {
  const AnyNotification none[] = {std::monostate(),         Value(),
                                  Value("k2tid"),           Value(1),
                                  Array{"k2tid"},           UNNotificationRequest{},
                                  UNNotificationResponse{}, notificationWith({}).request};
  for (const auto& notification : none) {
    EXPECT_FALSE(MVLPushHelpers::isMorveluneNotification(notification)) << notification.index();
    EXPECT_FALSE(MVLPushHelpers::userInfoFromNotification(notification).contains("k2tid"));
  }
  EXPECT_TRUE(MVLPushHelpers::userInfoFromNotification(notificationWith({}).request).empty());
}

TEST(MVLPushHelpersTest, AnyValueMarksANotificationOfThisSystem) {
  for (const Value& value : {Value(""), Value(0), Value(), Value(Dictionary())}) {
    EXPECT_TRUE(MVLPushHelpers::isMorveluneNotification(Dictionary{{"k2tid", value}}));
  }
  EXPECT_FALSE(MVLPushHelpers::isMorveluneNotification(Dictionary{{"K2TID", "1"}}));
}

}  // namespace
}  // namespace morvelune
