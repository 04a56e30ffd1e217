#include "platform/linux/SuggestedFilename.h"

#include <gtest/gtest.h>

#include "support/TestData.h"

namespace morvelune::testing {
namespace {

TEST(SuggestedFilenameTest, IsThatOfTheHeaderElseOfTheURL) {
  for (const auto& each : testData("data/suggested-filenames.json")) {
    std::optional<std::string> header;
    if (!each["header"].is_null()) header = textOf(each["header"]);
    EXPECT_EQ(suggestedFilename(header, each["url"]), each["name"]) << each;
  }
}

}  // namespace
}  // namespace morvelune::testing
