// The C++ face against the table of what every face must answer.
#include <gtest/gtest.h>

#include <cmath>
#include <future>
#include <locale>

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
  if (const auto number = value.visitInteger([](auto each) { return json(each); })) return *number;
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
using G = const Given&;

const std::map<std::string, std::function<Value(G)>> operations = {
    {"UNNotificationToDictionary",
     [](G g) { return UNNotificationToDictionary(g.notification(0)); }},
    {"userInfoFromNotification:", [](G g) { return Push::userInfoFromNotification(g.any(0)); }},
    {"isMorveluneNotification:", [](G g) { return Push::isMorveluneNotification(g.any(0)); }},
    {"customParamsFromUserInfo:", [](G g) { return Push::customParamsFromUserInfo(g.map(0)); }},
    {"actionParams:fromUserInfo:",
     [](G g) { return orNull(Push::actionParams(g.text(0), g.map(1))); }},
    {"actionCustomParams:fromUserInfo:",
     [](G g) { return Push::actionCustomParams(g.text(0), g.map(1)); }},
    {"trackingURLForAction:forNotification:",
     [](G g) {
       const auto url = Push::trackingURLForAction(g.text(0), g.any(1));
       return url ? Value(url->absoluteString()) : Value();
     }},
    {"shouldDelayDismissForNotificationResponse:",
     [](G g) { return Content::shouldDelayDismissForNotificationResponse(g.response(0)); }},
    {"customParamsForNotification:",
     [](G g) { return orNull(Content::customParamsForNotification(g.any(0))); }},
    {"actionCustomParams:forNotificationResponse:",
     [](G g) { return orNull(Content::actionCustomParams(g.text(0), g.response(1))); }},
    {"filledURL:", [](G g) { return orNull(Urls::filledURL(g.text(0))); }},
    {"filledURL:parameters:", [](G g) { return orNull(Urls::filledURL(g.text(0), g.map(1))); }},
    {"filledURL:parameters:allParamsRequired:",
     [](G g) { return orNull(Urls::filledURL(g.text(0), g.map(1), g.flag(2))); }},
    {"rangeOfTag:inString:",
     [](G g) { return rangeOf(Urls::rangeOfTag(g.text(0).value(), g.text(1).value())); }},
    {"commonURLParameters", [](G) { return Urls::commonURLParameters(); }},
    {"countryCode", [](G) { return MVLCommonHelpers::countryCode(); }},
    {"mvl_MD5String", [](G g) { return mvl_MD5String(g.receiver); }},
    {"mvl_SHA1String", [](G g) { return mvl_SHA1String(g.receiver); }},
    {"mvl_currencyString", [](G g) { return orNull(mvl_currencyString(g.receiver)); }},
    {"mvl_isNumberIncrementation", [](G g) { return mvl_isNumberIncrementation(g.receiver); }},
    {"mvl_stringByIncrementingByStringNumber:addPositiveSign:",
     [](G g) { return mvl_stringByIncrementingByStringNumber(g.receiver, g.text(0), g.flag(1)); }},
    {"mvl_URLEncodeString", [](G g) { return mvl_URLEncodeString(g.receiver); }},
    {"mvl_URLDecodeString", [](G g) { return orNull(mvl_URLDecodeString(g.receiver)); }},
    {"FSign", [](G g) { return FSign(g.value(0).data()->bytes().data(), g.size(1), g.size(2)); }},
    {"UTIMap", [](G) { return Extension().UTIMap(); }},
    {"UTIForData:", [](G g) { return orNull(Extension().UTIForData(g.value(0).data())); }},
    {"knownExtensionsMap", [](G) { return Extension().knownExtensionsMap(); }},
    {"UTIForData:suggestedFilename:",
     [](G g) { return orNull(Extension().UTIForData(g.value(0).data(), g.text(1))); }},
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

// --- What no table can say ---

TEST(FaceTest, FSignCopiesTheBytes) {
  char bytes[] = "ab";
  const Dictionary record = FSign(bytes, 2, 0);
  bytes[0] = 'x';
  EXPECT_EQ(record.data("data"), Data::copyOf("ab"));
}

// Numbers with a comma and with groups of digits.
class CommaNumbers : public std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(FaceTest, NumbersAreInsertedAlikeInEveryLocale) {
  const auto before = std::locale::global(std::locale(std::locale(), new CommaNumbers));
  const auto filled = Urls::filledURL("|a||b|", Dictionary{{"a", 1234567.5}, {"b", 0.1}});
  std::locale::global(before);
  EXPECT_EQ(filled, "1234567.50.1");
}

TEST(FaceTest, ATextEndsWhereItsViewDoes) {
  const std::string_view cut("%7ca%7c", 6);
  EXPECT_EQ(Urls::filledURL(cut, Dictionary{{"a", "1"}}), cut);
}

TEST(FaceTest, LogLinesHoldValuesAsFarAsTheyGo) {
  InMemoryPlatform memory;
  SystemLog& log = *Platform::current()->systemLog;
  log.log("no place", {"a"});
  log.log("%@%@ %@", {"a", std::nullopt});
  // No UTF-8: cut off where the value ends or another character begins, too long, a surrogate half,
  // and bytes that begin nothing.
  log.log("%@", {std::string_view("\xC2\x85", 1)});
  log.log("%@", {"\xC2 \xE2\x82"});
  log.log("%@", {"\xC1\x9B\xED\xA0\x80\xF4\x90\x80\x80\x9B"});
  const std::vector<std::string> lines{"no place", "a(null) %@", "\\xC2", "\\xC2 \\xE2\\x82",
                                       "\\xC1\\x9B\\xED\\xA0\\x80\\xF4\\x90\\x80\\x80\\x9B"};
  EXPECT_EQ(memory.log(), lines);
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
      {Point{0, 0}, 1},    {Point{-0.0, 0}, 1}, {Point{375, 812}, 2},
      {Point{NAN, -1}, 2}, {Point{0, 375}, 3},  {Point{0, NAN}, 3},
      {Point{812, 0}, 4},  {Point{NAN, 0}, 4},  {std::nullopt, 0}};
  for (const auto& [origin, code] : cases) {
    const auto screen = std::make_shared<InMemoryDevice>();
    screen->fixedOrigin = origin;
    EXPECT_EQ(mvl_currentOrientation(screen), code);
  }
  EXPECT_EQ(mvl_currentOrientation(nullptr), 0);
}

TEST(FaceTest, APathWithABadEscapeIsReadAsItStands) {
  const URL url = URL::unchecked("FILE://h/{a b}%41%zz%4?q");
  EXPECT_EQ(url.absoluteString(), "FILE://h/{a b}%41%zz%4?q");
  EXPECT_TRUE(url.isFileURL());
  EXPECT_EQ(url.path(), "/{a b}%41%zz%4");
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
