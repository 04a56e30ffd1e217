#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "morvelune/NSStringMorvelune.h"
#include "support/InMemoryPlatform.h"

namespace morvelune::testing {
namespace {

using namespace std::string_literals;

TEST(NSStringTest, Digests) {
  EXPECT_EQ(mvl_MD5String(""), "d41d8cd98f00b204e9800998ecf8427e");
  EXPECT_EQ(mvl_MD5String("message digest"), "f96b697d7cb7938d525a2f31aaf161d0");  // RFC 1321, A.5
  EXPECT_EQ(mvl_SHA1String(""), "da39a3ee5e6b4b0d3255bfef95601890afd80709");
  EXPECT_EQ(mvl_SHA1String("abc"), "a9993e364706816aba3e25717850c26c9cd0d89d");  // FIPS 180, A.1
  // A zero byte ends the input of one and not of the other.
  EXPECT_EQ(mvl_MD5String("a\0b"s), mvl_MD5String("a"));
  EXPECT_EQ(mvl_SHA1String("a\0b"s), "4a3dec2d1f8245280855c42db0ee4239f917fdb8");
}

TEST(NSStringTest, CurrencyCodes) {
  const std::pair<std::string, std::optional<std::string>> cases[] = {
      {"EUR 12,90", "EUR"}, {"USD", "USD"}, {"usd", "USD"}, {"EURO", "EUR"},
      {"FRF", "FRF"},       {"EU", {}},     {"12", {}},     {"", {}},
      {"XQZ9", {}},         {" EUR", {}},   {"€ 12", {}},   {"12€", {}},
      {"EU\U0001F600", {}},  // a pair that the cut splits
      {"EU\0"s, {}},
  };
  for (const auto& [receiver, code] : cases)
    EXPECT_EQ(mvl_currencyString(receiver), code) << receiver;
}

TEST(NSStringTest, SignedIncrements) {
  for (const std::string& yes : {"+5"s, "-5"s, "- 2,5"s, "+2.5"s, "+5x3"s, "+5x"s, " + 1 2 "s,
                                 "+5\U0001F600"
                                 "3"s,
                                 "+٣"s, "+1"s + std::string(500, '0')}) {
    EXPECT_TRUE(mvl_isNumberIncrementation(yes)) << yes;
  }
  for (const std::string& no :
       {"5"s, "+"s, "+ "s, ""s, "+,5"s, "++5"s, "+5xx3"s, "+5\n"s, "+\t5"s, "+5.1.2"s, "−5"s}) {
    EXPECT_FALSE(mvl_isNumberIncrementation(no)) << no;
  }
}

TEST(NSStringTest, Increments) {
  using Increment = std::optional<std::string>;
  const std::tuple<std::string, Increment, std::string, std::string> cases[] = {
      {"10", "+2,5", "+12.500000", "12.500000"},
      {"3", "-5", "-2.000000", "-2.000000"},
      {"1", "-1", "0.000000", "0.000000"},
      {"abc", "+2", "+2.000000", "2.000000"},
      {"1 000,5", "+ 0.25", "+1000.750000", "1000.750000"},
      {"1,234,567", "+1", "+2.234000", "2.234000"},  // both commas are points, the second ends it
      {"0x10", "+inf", "0.000000", "0.000000"},      // neither is a number
      {"1e3", "+1e", "+1001.000000", "1001.000000"},
      {"-0", "-0", "-0.000000", "-0.000000"},
      {"1e999", "+1", "+inf", "inf"},
      {"5", "", "+5.000000", "5.000000"},
      {"5", std::nullopt, "", ""},
  };
  for (const auto& [receiver, increment, signedSum, plainSum] : cases) {
    EXPECT_EQ(mvl_stringByIncrementingByStringNumber(receiver, increment, true), signedSum);
    EXPECT_EQ(mvl_stringByIncrementingByStringNumber(receiver, increment, false), plainSum);
  }
}

// The two modes, told apart by the version that the platform reports.
TEST(NSStringTest, PercentCodingFollowsTheSystemVersion) {
  const std::tuple<std::string, std::string, std::string> encoded[] = {
      {"a b&c", "a%20b&c", "a%20b%26c"},
      {"!$&'()*+,-./:;=?@_~", "!$&'()*+,-./:;=?@_~",
       "%21%24%26%27%28%29%2A%2B%2C-.%2F%3A%3B%3D%3F%40_~"},
      {"%#[]\"|é\n", "%25%23%5B%5D%22%7C%C3%A9%0A", "%25%23%5B%5D%22%7C%C3%A9%0A"},
      {"", "", ""},
  };
  InMemoryPlatform memory;
  for (const int version : {8, 9, 17}) {
    memory.device().system = {version, 0, 0};
    for (const auto& [plain, modern, earlier] : encoded) {
      EXPECT_EQ(mvl_URLEncodeString(plain), version < 9 ? earlier : modern);
    }
    EXPECT_EQ(mvl_URLDecodeString("a+b%20c"), version < 9 ? "a b c" : "a+b c");
    EXPECT_EQ(mvl_URLDecodeString("%2B%c3%A9"), "+é");
    EXPECT_EQ(mvl_URLDecodeString(""), "");
    for (const char* broken : {"100%", "%4", "%zz", "%FF", "%C3"}) {
      EXPECT_EQ(mvl_URLDecodeString(broken), std::nullopt) << broken;
    }
  }
}

}  // namespace
}  // namespace morvelune::testing
