#include "morvelune/MVLURLHelpers.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <tuple>

#include "support/InMemoryPlatform.h"

namespace morvelune::testing {
namespace {

class MVLURLHelpersTest : public ::testing::Test {
 protected:
  MVLURLHelpersTest() { memory_.device().vendor = "ID"; }
  InMemoryPlatform memory_;
};

TEST_F(MVLURLHelpersTest, FillsTags) {
  const std::tuple<const char*, Dictionary, const char*> cases[] = {
      {"http://h/?d=|idfv|&u=|uid|", {}, "http://h/?d=ID&u="},
      {"|s|", {{"s", "abc"}}, "abc"},                        // the caller wins
      {"|uid|", {{"uid", "MVLNullValue"}}, ""},              // no value
      {"|uid|", {{"uid", "mvlnullvalue"}}, "mvlnullvalue"},  // the marker's case counts
      {"|idfv||idfv|", {}, "ID|idfv|"},                      // only the first occurrence
      {"%7Cidfv%7C %7cIDFV%7c", {}, "ID %7cIDFV%7c"},
      {"%7cIDFV%7C", {}, "ID"},
      {"%7cidfv%7c|idfv|", {}, "%7cidfv%7cID"},  // the plain form has priority
      {"|idfv%7c", {}, "|idfv%7c"},              // the forms do not mix
      {"|IDMEMBER|", {{"idMember", "7"}}, "7"},
      {"|unknown|", {}, "|unknown|"},
      {"|v|", {{"v", "a&b c|%"}}, "a&b c|%"},  // inserted as it stands
      {"a||b", {{"", "x"}}, "axb"},            // an empty name is a name
      {"", {}, ""},
      {"|a", {{"a", "x"}}, "|a"},
      // Full Unicode, in exact positions though lower case has another length.
      {"İİ|ÉTÉ|é", {{"été", "x"}}, "İİxé"},
      {"é|\u212A|z", {{"k", "x"}}, "éxz"},  // Kelvin sign
  };
  for (const auto& [url, parameters, filled] : cases) {
    EXPECT_EQ(MVLURLHelpers::filledURL(url, parameters), filled);
  }
  EXPECT_EQ(MVLURLHelpers::filledURL("|idfv|"), "ID");
}

TEST_F(MVLURLHelpersTest, InsertsNumbersAsTextAndSkipsWhatIsNone) {
  const std::pair<Value, const char*> cases[] = {
      {7, "7"},
      {-1, "-1"},
      {std::numeric_limits<std::uint64_t>::max(), "18446744073709551615"},
      {2.5, "2.5"},
      {1.0, "1"},
      {1.0 / 3.0, "0.3333333333333333"},
      {0.1, "0.1"},
      {1e300, "1e+300"},
      {true, "1"},
      {nullptr, "|v|"},
      {Array{1}, "|v|"},
      {Dictionary{}, "|v|"}};
  for (const auto& [value, filled] : cases) {
    EXPECT_EQ(MVLURLHelpers::filledURL("|v|", Dictionary{{"v", value}}), filled);
  }
  // What cannot be read leaves the common parameter in place.
  EXPECT_EQ(MVLURLHelpers::filledURL("|idfv|", Dictionary{{"idfv", nullptr}}), "ID");
}

TEST_F(MVLURLHelpersTest, RequiredParametersFailOnlyWhereTheirTagOccurs) {
  const Dictionary null{{"uid", "MVLNullValue"}, {"x", "1"}};
  EXPECT_EQ(MVLURLHelpers::filledURL("|uid|", null, true), std::nullopt);
  EXPECT_EQ(MVLURLHelpers::filledURL("%7CUID%7c", null, true), std::nullopt);
  EXPECT_EQ(MVLURLHelpers::filledURL("|x||unknown|", null, true), "1|unknown|");
  EXPECT_EQ(MVLURLHelpers::filledURL("|idMember|", null, true), "");  // empty is a value
  EXPECT_EQ(MVLURLHelpers::filledURL("|idfv|", std::nullopt, true), "ID");
  EXPECT_EQ(MVLURLHelpers::filledURL(std::nullopt, null), std::nullopt);
}

TEST_F(MVLURLHelpersTest, FindsTheRangeOfATag) {
  EXPECT_EQ(MVLURLHelpers::rangeOfTag("s", "a|S|b"), (NSRange{1, 3}));
  EXPECT_EQ(MVLURLHelpers::rangeOfTag("s", "é%7Cs%7c"), (NSRange{2, 7}));
  EXPECT_EQ(MVLURLHelpers::rangeOfTag("s", "|t|").location, NSNotFound);
}

}  // namespace
}  // namespace morvelune::testing
