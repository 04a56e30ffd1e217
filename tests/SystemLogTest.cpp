#include "morvelune/platform/SystemLog.h"

#include <gtest/gtest.h>

#include <string>

#include "support/InMemoryPlatform.h"

namespace morvelune::testing {
namespace {

using namespace std::string_literals;

TEST(SystemLogTest, InsertsValuesInOrder) {
  InMemorySystemLog log;
  log.log("a [%@] b [%@]", {"1", std::nullopt});
  log.log("%@%@", {"%@", "2"});  // a value's own placeholder is text
  log.log("%@ and %@", {"1"});   // too few values
  log.log("100%", {"1"});        // too many
  EXPECT_EQ(log.lines(), (std::vector<std::string>{"a [1] b [(null)]", "%@2", "1 and %@", "100%"}));
}

TEST(SystemLogTest, ValuesCannotForgeALine) {
  const std::pair<std::string, const char*> cases[] = {
      {"a\nb", "a\\nb"},
      {"a\r\tb", "a\\r\\tb"},
      {"\0\x1B[2J\x7F"s, "\\u0000\\u001B[2J\\u007F"},
      {"\xC2\x85x\xC2\x9B", "\\u0085x\\u009B"},              // C1 controls
      {"\xE2\x80\xA8x\xE2\x80\xA9", "\\u2028x\\u2029"},      // line, paragraph separator
      {"é\xC2\xA0€\xE2\x80\xA7", "é\xC2\xA0€\xE2\x80\xA7"},  // their neighbours are text
      {"\xC2", "\xC2"},                                      // a cut sequence
  };
  InMemorySystemLog log;
  for (const auto& [value, line] : cases) {
    log.log("%@", {value});
    EXPECT_EQ(log.lines().back(), line);
  }
}

}  // namespace
}  // namespace morvelune::testing
