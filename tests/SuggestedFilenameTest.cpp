#include "platform/linux/SuggestedFilename.h"

#include <gtest/gtest.h>

#include "support/TestData.h"

namespace morvelune::testing {
namespace {

TEST(SuggestedFilenameTest, IsThatOfTheHeaderElseOfTheURL) {
  const Keys keys{"header", "url", "name"};
  for (const auto& each : casesOf(testData("data/suggested-filenames.json"), keys)) {
    std::optional<std::string> header;
    if (!each.at("header").is_null()) header = textOf(each["header"]);
    EXPECT_EQ(suggestedFilename(header, each.at("url")), each.at("name").get<std::string>())
        << each;
  }
}

}  // namespace
}  // namespace morvelune::testing
