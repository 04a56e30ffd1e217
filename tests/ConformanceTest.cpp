// The C++ face against the table of what every face must answer.
#include <gtest/gtest.h>

#include <cmath>
#include <future>

#include "morvelune/MorveluneExtension.h"
#include "support/Conformance.h"
#include "support/ExposedExtension.h"
#include "support/InMemoryPlatform.h"

namespace morvelune::testing {
namespace {

using nlohmann::json;

// --- From JSON to the face's values, and back ---

json jsonOf(const Value& value) {
  if (const auto list = value.array()) {
    json all = json::array();
    for (const Value& each : *list) all.push_back(jsonOf(each));
    return all;
  }
  if (const auto map = value.dictionary()) {
    json all = json::object();
    for (const auto& [key, each] : *map) all[key] = jsonOf(each);
    return all;
  }
  if (const auto flag = value.boolean()) return *flag;
  if (const auto number = value.integer()) return *number;
  if (const auto number = value.unsignedInteger()) return *number;
  if (const auto number = value.real()) return *number;
  if (const auto text = value.string()) return *text;
  if (const auto data = value.data()) return dataOfBytes(data->bytes());
  return nullptr;
}

UNNotificationRequest requestOf(const Dictionary& fields) {
  return {std::make_shared<const UNNotificationContent>(
      UNNotificationContent::Fields{.title = fields.string("title"),
                                    .subtitle = fields.string("subtitle"),
                                    .body = fields.string("body"),
                                    .userInfo = fields.dictionary("userInfo")})};
}

// What an operation is given.
class Given {
 public:
  explicit Given(const ConformanceCase& each)
      : receiver(each.receiver.is_string() ? each.receiver.get<std::string>() : ""),
        arguments_(*valueOf(each.arguments).array()) {}

  // The argument at `index`, as a plain value of some type, a response or any notification.
  [[nodiscard]] Value value(std::size_t index) const { return arguments_.value(index); }
  [[nodiscard]] std::optional<std::string> text(std::size_t index) const {
    return value(index).string();
  }
  [[nodiscard]] std::size_t size(std::size_t index) const {
    return value(index).unsignedInteger().value();
  }
  [[nodiscard]] bool flag(std::size_t index) const { return value(index).boolean().value(); }
  [[nodiscard]] std::optional<Dictionary> map(std::size_t index) const {
    return arguments_.dictionary(index);
  }
  [[nodiscard]] UNNotificationResponse response(std::size_t index) const {
    const Dictionary fields = map(index)->dictionary("$response").value();
    return {{requestOf(fields)}, fields.string("actionIdentifier").value()};
  }
  [[nodiscard]] UNNotification notification(std::size_t index) const {
    return {requestOf(map(index)->dictionary("$notification").value())};
  }
  [[nodiscard]] AnyNotification any(std::size_t index) const {
    const Dictionary fields = map(index).value_or(Dictionary());
    if (fields.contains("$response")) return response(index);
    if (fields.contains("$notification")) return notification(index);
    if (const auto request = fields.dictionary("$request")) return requestOf(*request);
    return value(index).isNull() ? AnyNotification() : value(index);
  }

  // The object at the end of a path.
  [[nodiscard]] Dictionary at(const ConformancePath& path) const {
    Value found = value(path.argument);
    const auto outer = found.dictionary();
    if (outer && !outer->empty() && outer->begin()->key[0] == '$') found = outer->begin()->value;
    for (const std::string& step : path.steps) {
      const auto list = found.array();
      found = list ? list->value(std::stoul(step)) : found.dictionary()->value(step).value();
    }
    return found.dictionary().value();
  }

  const std::string receiver;

 private:
  const Array arguments_;
};

// --- The operations of the face ---

template <typename T>
Value orNull(const std::optional<T>& result) {
  return result ? Value(*result) : Value();
}

Value rangeOf(const NSRange& range) {
  if (range.location == NSNotFound) return Dictionary{{"location", "NSNotFound"}};
  return Dictionary{{"location", range.location}, {"length", range.length}};
}

using Push = MVLPushHelpers;
using Content = MVLNotificationContentExtension;
using Urls = MVLURLHelpers;
using Extension = ExposedExtension;

const std::map<std::string, std::function<Value(const Given&)>> operations = {
    {"UNNotificationToDictionary",
     [](const Given& g) { return UNNotificationToDictionary(g.notification(0)); }},
    {"userInfoFromNotification:",
     [](const Given& g) { return Push::userInfoFromNotification(g.any(0)); }},
    {"isMorveluneNotification:",
     [](const Given& g) { return Push::isMorveluneNotification(g.any(0)); }},
    {"customParamsFromUserInfo:",
     [](const Given& g) { return Push::customParamsFromUserInfo(g.map(0)); }},
    {"actionParams:fromUserInfo:",
     [](const Given& g) { return orNull(Push::actionParams(g.text(0), g.map(1))); }},
    {"actionCustomParams:fromUserInfo:",
     [](const Given& g) { return Push::actionCustomParams(g.text(0), g.map(1)); }},
    {"trackingURLForAction:forNotification:",
     [](const Given& g) {
       const auto url = Push::trackingURLForAction(g.text(0), g.any(1));
       return url ? Value(url->absoluteString()) : Value();
     }},
    {"shouldDelayDismissForNotificationResponse:",
     [](const Given& g) {
       return Content::shouldDelayDismissForNotificationResponse(g.response(0));
     }},
    {"customParamsForNotification:",
     [](const Given& g) { return orNull(Content::customParamsForNotification(g.any(0))); }},
    {"actionCustomParams:forNotificationResponse:",
     [](const Given& g) { return orNull(Content::actionCustomParams(g.text(0), g.response(1))); }},
    {"filledURL:", [](const Given& g) { return orNull(Urls::filledURL(g.text(0))); }},
    {"filledURL:parameters:",
     [](const Given& g) { return orNull(Urls::filledURL(g.text(0), g.map(1))); }},
    {"filledURL:parameters:allParamsRequired:",
     [](const Given& g) { return orNull(Urls::filledURL(g.text(0), g.map(1), g.flag(2))); }},
    {"rangeOfTag:inString:",
     [](const Given& g) {
       return rangeOf(Urls::rangeOfTag(g.text(0).value(), g.text(1).value()));
     }},
    {"commonURLParameters", [](const Given&) { return Urls::commonURLParameters(); }},
    {"countryCode", [](const Given&) { return MVLCommonHelpers::countryCode(); }},
    {"mvl_MD5String", [](const Given& g) { return mvl_MD5String(g.receiver); }},
    {"mvl_SHA1String", [](const Given& g) { return mvl_SHA1String(g.receiver); }},
    {"mvl_currencyString", [](const Given& g) { return orNull(mvl_currencyString(g.receiver)); }},
    {"mvl_isNumberIncrementation",
     [](const Given& g) { return mvl_isNumberIncrementation(g.receiver); }},
    {"mvl_stringByIncrementingByStringNumber:addPositiveSign:",
     [](const Given& g) {
       return mvl_stringByIncrementingByStringNumber(g.receiver, g.text(0), g.flag(1));
     }},
    {"mvl_URLEncodeString", [](const Given& g) { return mvl_URLEncodeString(g.receiver); }},
    {"mvl_URLDecodeString", [](const Given& g) { return orNull(mvl_URLDecodeString(g.receiver)); }},
    {"FSign",
     [](const Given& g) { return FSign(g.value(0).data()->bytes().data(), g.size(1), g.size(2)); }},
    {"UTIMap", [](const Given&) { return Extension().UTIMap(); }},
    {"UTIForData:",
     [](const Given& g) { return orNull(Extension().UTIForData(g.value(0).data())); }},
    {"knownExtensionsMap", [](const Given&) { return Extension().knownExtensionsMap(); }},
    {"UTIForData:suggestedFilename:",
     [](const Given& g) { return orNull(Extension().UTIForData(g.value(0).data(), g.text(1))); }},
};

TEST(ConformanceTest, EveryCaseHolds) {
  for (const ConformanceCase& each : conformanceCases()) {
    InMemoryPlatform memory;
    prepare(memory, each);
    const auto operation = operations.find(each.operation);
    ASSERT_NE(operation, operations.end()) << each.operation << " is no operation of this face";
    const Given given(each);
    const Value result = operation->second(given);
    EXPECT_EQ(fault(each, jsonOf(result), memory.log()), "");
    if (each.same) {
      EXPECT_TRUE(result.dictionary()->isSameObject(given.at(*each.same)))
          << each.text << "\ngives a copy";
    }
  }
}

TEST(ConformanceTest, EveryOperationIsInTheTable) {
  std::set<std::string> named;
  for (const ConformanceCase& each : conformanceCases()) named.insert(each.operation);
  for (const auto& [name, operation] : operations) EXPECT_TRUE(named.contains(name)) << name;
}

// --- What no table can say ---

TEST(FaceTest, FSignCopiesTheBytes) {
  char bytes[] = "ab";
  const Dictionary record = FSign(bytes, 2, 0);
  bytes[0] = 'x';
  EXPECT_EQ(record.data("data"), Data::copyOf("ab"));
}

TEST(FaceTest, BothMapsAreOneObjectForAllThreads) {
  const auto maps = [] {
    return std::pair(Extension().UTIMap(), Extension().knownExtensionsMap());
  };
  auto other = std::async(std::launch::async, maps);
  const auto [types, extensions] = maps();
  const auto [otherTypes, otherExtensions] = other.get();
  EXPECT_TRUE(types.isSameObject(otherTypes));
  EXPECT_TRUE(extensions.isSameObject(otherExtensions));
}

TEST(FaceTest, OrientationsHaveCodes) {
  const std::pair<std::optional<Point>, int> cases[] = {
      {Point{0, 0}, 1},   {Point{375, 812}, 2}, {Point{NAN, -1}, 2}, {Point{0, 375}, 3},
      {Point{0, NAN}, 3}, {Point{812, 0}, 4},   {Point{NAN, 0}, 4},  {std::nullopt, 0}};
  for (const auto& [origin, code] : cases) {
    const auto screen = std::make_shared<const InMemoryScreen>(Size{1, 1}, origin);
    EXPECT_EQ(mvl_currentOrientation(screen), code);
  }
  EXPECT_EQ(mvl_currentOrientation(nullptr), 0);
}

TEST(FaceTest, ARequestMayHaveNoContent) {
  EXPECT_EQ(Push::userInfoFromNotification(UNNotificationRequest{}), Dictionary());
  EXPECT_FALSE(Push::isMorveluneNotification(UNNotificationResponse{}));
}

TEST(FaceTest, WhatOnlyHostsUseHoldsItsFixedValues) {
  EXPECT_STREQ(MVLUNCenterTrackingActionDismissed, "dismiss");
  EXPECT_STREQ(kMVLCloseKey, "zuk2tclose");
  EXPECT_STREQ(kMVLUDIKey, "zuk2tudi");
  EXPECT_STREQ(reinterpret_cast<const char*>(MorveluneExtensionVersionString),
               "@(#)PROGRAM:MorveluneExtension  PROJECT:Morvelune-1\n");
  EXPECT_EQ(MorveluneExtensionVersionNumber, 1.0);
}

}  // namespace
}  // namespace morvelune::testing
