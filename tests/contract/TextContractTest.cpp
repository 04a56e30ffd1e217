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
  if (operation == "caseFolded") return text.caseFolded(first);
  if (operation == "matches") return text.matches(first, textOf(given[1]));
  if (operation == "doubleValue") return jsonOf(text.doubleValue(first));
  if (operation == "addingPercentEncodingForQuery") {
    return text.addingPercentEncodingForQuery(first);
  }
  if (operation == "addingPercentEscapes") return text.addingPercentEscapes(first);
  if (operation != "removingPercentEncoding") throw std::invalid_argument(operation);
  const auto plain = text.removingPercentEncoding(first);
  return plain ? ordered_json(*plain) : ordered_json();
}

class TextContract : public ::testing::TestWithParam<Subject> {};

INSTANTIATE_CONTRACT(TextContract, text);

TEST_P(TextContract, HoldsForEveryCase) {
  const auto text = GetParam().text();
  std::set<std::string> skipped;
  const Keys keys{"operation", "arguments", "result", "rule"};
  for (const ordered_json& each : casesOf(testData("data/text.json"), keys)) {
    if (const std::string rule = each.value("rule", ""); GetParam().departures.contains(rule)) {
      skipped.insert(rule);
      continue;
    }
    const ordered_json result = resultOf(*text, each.at("operation"), each.at("arguments"));
    // A long text stands in pieces.
    const bool isText = result.is_string() && each.at("result").is_array();
    EXPECT_EQ(result, isText ? ordered_json(textOf(each["result"])) : each["result"])
        << each.dump();
  }
  if (!skipped.empty()) GTEST_SKIP() << "but for " << ::testing::PrintToString(skipped);
}

}  // namespace
}  // namespace morvelune::testing
