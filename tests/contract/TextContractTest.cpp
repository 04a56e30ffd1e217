#include <cmath>

#include "contract/Subject.h"
#include "support/TestData.h"

namespace morvelune::testing {
namespace {

using nlohmann::ordered_json;

ordered_json jsonOf(double number) {
  if (std::isinf(number)) return number > 0 ? "Infinity" : "-Infinity";
  return number;
}

// What an operation gives for the arguments of a case.
ordered_json resultOf(const Text& text, const std::string& operation, const ordered_json& given) {
  if (operation == "fixedNotation") return text.fixedNotation(numberOf(given[0]));
  const std::string first = textOf(given[0]);
  if (operation == "rangeIgnoringCase") {
    const auto [location, length] = text.rangeIgnoringCase(first, textOf(given[1]));
    return location == NSNotFound ? ordered_json("NSNotFound") : ordered_json{location, length};
  }
  if (operation == "uppercased") return text.uppercased(first);
  if (operation == "length") return text.length(first);
  if (operation == "prefix") return text.prefix(first, given[1].get<std::size_t>());
  if (operation == "matches") return text.matches(first, textOf(given[1]));
  if (operation == "doubleValue") return jsonOf(text.doubleValue(first));
  if (operation == "addingPercentEncodingForQuery") {
    return text.addingPercentEncodingForQuery(first);
  }
  if (operation == "addingPercentEscapes") return text.addingPercentEscapes(first);
  const auto plain = text.removingPercentEncoding(first);
  return plain ? ordered_json(*plain) : ordered_json();
}

class TextContract : public ::testing::TestWithParam<Subject> {
 protected:
  static bool departs(const std::string& rule) { return GetParam().departures.contains(rule); }
};

INSTANTIATE_CONTRACT(TextContract, text);

TEST_P(TextContract, HoldsForEveryCase) {
  const auto text = GetParam().text();
  std::set<std::string> skipped;
  for (const ordered_json& each : testData("data/text.json")) {
    if (const std::string rule = each.value("rule", ""); departs(rule)) {
      skipped.insert(rule);
      continue;
    }
    const ordered_json result = resultOf(*text, each["operation"], each["arguments"]);
    EXPECT_EQ(result, each["result"]) << each.dump();
  }
  if (!skipped.empty()) GTEST_SKIP() << "but for " << ::testing::PrintToString(skipped);
}

}  // namespace
}  // namespace morvelune::testing
