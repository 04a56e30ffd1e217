#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "platform/linux/LinuxServices.h"

namespace morvelune {
namespace {

using namespace std::string_literals;

class TextContract : public testing::TestWithParam<std::shared_ptr<Text> (*)()> {
 protected:
  const std::shared_ptr<Text> text_ = GetParam()();
};

INSTANTIATE_TEST_SUITE_P(Linux, TextContract, testing::Values(&makeLinuxText));

TEST_P(TextContract, FindsARangeIgnoringCaseAndUpperCases) {
  const std::tuple<const char*, const char*, NSRange> cases[] = {
      {"|idfv|", "x|IDfv|y|idfv|", {1, 6}},
      {"|a|", "|a", {}},
      {"", "abc", {}},
      {"|É|", "x|é|", {1, 4}},
      {"ΑΣ", "ας", {0, 4}},
      {"K", "a\u212A", {1, 3}},
      // Lower-casing makes three bytes of the two of "İ", and one of the three of the Kelvin sign.
      {"|s|", "İ|S|İ", {2, 3}},
      {"|s|", "\u212A|S|", {3, 3}},
      {"\u212A", "ak", {1, 1}},
      // Half of a lower-cased "İ" is no character of the text, nor is a byte of "é".
      {"i", "İi", {2, 1}},
      {"\u0307", "İ", {}},
      {"\xA9", "é", {}},
      {"\xFF", "é\xFE", {2, 1}},
      {"|é|", "\xFF\xF0\x9F|É|", {3, 4}}};
  for (const auto& [pattern, text, range] : cases) {
    EXPECT_EQ(text_->rangeIgnoringCase(pattern, text), range) << pattern << " in " << text;
  }
  EXPECT_EQ(text_->uppercased("straße éi\xFF"), "STRASSE ÉI\uFFFD");
}

TEST_P(TextContract, CountsAndCutsInUTF16Units) {
  const std::string text = "aé😀b";
  EXPECT_EQ(text_->length(text), 5U);
  EXPECT_EQ(text_->length("\xF0\x9F\x98z"), 2U);
  EXPECT_EQ(text_->length("a\0b"s), 3U);
  std::size_t count = 0;
  for (const char* prefix : {"", "a", "aé", "aé", "aé😀", "aé😀b", "aé😀b"}) {
    EXPECT_EQ(text_->prefix(text, count++), prefix);
  }
  EXPECT_EQ(text_->prefix(text, std::numeric_limits<std::size_t>::max()), text);
}

TEST_P(TextContract, MatchesWholeTexts) {
  const std::string number = R"(^(\+|\-)\d+(.|\,)?\d*$)";
  for (const char* text : {"+5", "+\u0665", "-5😀2"}) EXPECT_TRUE(text_->matches(text, number));
  for (const char* text : {"+5\n", "+5\u2028", "x+5"}) EXPECT_FALSE(text_->matches(text, number));
  EXPECT_FALSE(text_->matches("a\0"s, "a"));
  EXPECT_FALSE(text_->matches("(", "("));
  // This one would take longer than the age of the world.
  EXPECT_FALSE(text_->matches(std::string(200, 'a') + "b", "(a|aa)+c"));
}

TEST_P(TextContract, ReadsNumbersLeniently) {
  const std::vector<std::pair<double, const char*>> cases = {
      {12.5, "12.5x"}, {2, " \t\n+2"},   {2, "\u00A02"},      {0.5, ".5"},
      {5, "5."},       {-150, "-1.5E2"}, {1.2, "1.2.3"},      {1, "1,5"},
      {1, "1e"},       {1, "1e+"},       {HUGE_VAL, "1e999"}, {-HUGE_VAL, "-1e999"}};
  for (const auto& [number, text] : cases) EXPECT_EQ(text_->doubleValue(text), number) << text;
  EXPECT_EQ(text_->doubleValue("4.9406564584124654e-324"),
            std::numeric_limits<double>::denorm_min());
  for (const char* text : {"", "abc", "1e-999", "+-2", "- 5", ".", "0x10", "inf", "nan"}) {
    EXPECT_EQ(text_->doubleValue(text), 0) << text;
  }
}

TEST_P(TextContract, WritesNumbersInFixedNotation) {
  const std::vector<std::pair<double, const char*>> cases = {
      {12.5, "12.500000"}, {-0.0, "-0.000000"}, {0.0000005, "0.000000"}, {2.9999999, "3.000000"},
      {-HUGE_VAL, "-inf"}, {HUGE_VAL, "inf"},   {std::nan(""), "nan"}};
  for (const auto& [number, text] : cases) EXPECT_EQ(text_->fixedNotation(number), text);
  EXPECT_EQ(text_->fixedNotation(std::numeric_limits<double>::lowest()).size(), 1 + 309 + 1 + 6U);
  EXPECT_EQ(text_->fixedNotation(1e300).substr(0, 20), "10000000000000000525");
}

TEST_P(TextContract, AddsPercentEncoding) {
  const std::string query = "azAZ09!$&'()*+,-./:;=?@_~";
  EXPECT_EQ(text_->addingPercentEncodingForQuery(query), query);
  EXPECT_EQ(text_->addingPercentEscapes(query),
            "azAZ09%21%24%26%27%28%29%2A%2B%2C-.%2F%3A%3B%3D%3F%40_~");
  const std::vector<std::pair<std::string, const char*>> cases = {
      {" \"#%<>", "%20%22%23%25%3C%3E"},
      {"[\\]^`{|}", "%5B%5C%5D%5E%60%7B%7C%7D"},
      {"\0\x7F"s, "%00%7F"},
      {"é😀\xFF", "%C3%A9%F0%9F%98%80%EF%BF%BD"}};
  for (const auto& [text, encoded] : cases) {
    EXPECT_EQ(text_->addingPercentEncodingForQuery(text), encoded);
    EXPECT_EQ(text_->addingPercentEscapes(text), encoded);
  }
}

TEST_P(TextContract, RemovesPercentEncoding) {
  EXPECT_EQ(text_->removingPercentEncoding("a+b%20c%c3%A9é"), "a+b céé");
  EXPECT_EQ(text_->removingPercentEncoding("%00"), "\0"s);
  for (const char* text :
       {"100%", "%4", "%g1", "%1g", "%-1", "%+1", "% 1", "%C3", "%ED%A0%80", "\xFF"}) {
    EXPECT_EQ(text_->removingPercentEncoding(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace morvelune
