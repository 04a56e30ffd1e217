#include <gtest/gtest.h>

#include <string>

#include "morvelune/MVLPushHelpers.h"

namespace morvelune {
namespace {

TEST(CustomParamsTest, AreWhatIsNotReserved) {
  Dictionary reserved;
  for (const char* key :
       {"aps", "k2tid", "k2turl", "k2td", "k2tb", "openWithSafari", "zuk2t.log.id",
        "zuk2tIdentifier", "mvl-disp-track-sent", "mvl-tk", "mvl-atts"}) {
    reserved = reserved.with(key, "x");
  }
  // Nested keys and other cases are custom; values pass untouched, null included.
  const Dictionary nested{{"k", Array{1, nullptr}}};
  Dictionary custom{{"promo", "spring"}, {"level", 3}, {"nothing", nullptr}, {"nested", nested}};
  for (const char* key :
       {"APS", "bid", "ccp", "delay-dismiss", "url", "params", "att-url", "att-id", ""}) {
    custom = custom.with(key, 1);
  }
  const Dictionary found = MVLPushHelpers::customParamsFromUserInfo(reserved.with(custom));
  EXPECT_EQ(found, custom);
  EXPECT_TRUE(found.dictionary("nested")->isSameObject(nested));
  EXPECT_TRUE(MVLPushHelpers::customParamsFromUserInfo(reserved).empty());
  EXPECT_TRUE(MVLPushHelpers::customParamsFromUserInfo(std::nullopt).empty());
}

TEST(CustomParamsTest, TheFirstButtonOfItsNameIsFound) {
  const Dictionary params{{"x", 1}};
  const Dictionary first{{"bid", "a"}, {"ccp", params}};
  // Elements that are no button are passed over without effect on those behind them.
  const Dictionary payload{{"k2tb", Array{"no button", nullptr, Dictionary{{"ccp", params}},
                                          Dictionary{{"bid", 7}}, first, Dictionary{{"bid", "b"}},
                                          Dictionary{{"bid", "a"}, {"ccp", Dictionary{{"x", 2}}}},
                                          Dictionary{{"bid", "text"}, {"ccp", "none"}}}}};
  const auto button = MVLPushHelpers::actionParams("a", payload);
  ASSERT_TRUE(button);
  EXPECT_TRUE(button->isSameObject(first));
  EXPECT_TRUE(MVLPushHelpers::actionCustomParams("a", payload).isSameObject(params));

  const std::pair<std::optional<std::string>, std::optional<Dictionary>> nothing[] = {
      {"c", payload},
      {"A", payload},
      {"7", payload},
      {std::nullopt, payload},
      {"a", std::nullopt},
      {"a", Dictionary()},
      {"a", Dictionary{{"k2tb", first}}}};
  for (const auto& [action, given] : nothing) {
    EXPECT_FALSE(MVLPushHelpers::actionParams(action, given));
    EXPECT_EQ(MVLPushHelpers::actionCustomParams(action, given), Dictionary());
  }
  for (const char* withoutParams : {"b", "text"}) {
    EXPECT_TRUE(MVLPushHelpers::actionParams(withoutParams, payload));
    EXPECT_EQ(MVLPushHelpers::actionCustomParams(withoutParams, payload), Dictionary());
  }
}

}  // namespace
}  // namespace morvelune
