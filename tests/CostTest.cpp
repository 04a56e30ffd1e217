// What a delivery, a filling and an inspection may cost, in counts, which are the same on every
// machine. Who makes one of them cheaper lowers its figure here.
#include <gtest/gtest.h>

#include "morvelune/MVLNotificationServiceExtension.h"
#include "morvelune/MVLURLHelpers.h"
#include "support/Allocations.h"
#include "support/CountingText.h"
#include "support/InMemoryPlatform.h"
#include "tools/morvelune/Inspection.h"

namespace morvelune::testing {
namespace {

struct Cost {
  std::size_t searches;  // of the platform's text
  std::size_t allocations;
  std::size_t peakBytes;  // beside what was held before
};

class CostTest : public ::testing::Test {
 protected:
  CostTest() {
    auto counting = std::make_shared<Platform>(*Platform::current());
    counting->text = text_;
    Platform::install(std::move(counting));
  }

  // The second time, because the first one also makes what is made once.
  template <typename Work>
  Cost costOf(Work work) {
    work();
    const std::size_t searches = text_->searches;
    const Allocations before = allocations;
    allocations.peakBytes = before.bytes;
    work();
    return {text_->searches - searches, allocations.count - before.count,
            allocations.peakBytes - before.bytes};
  }

  Cost costOfDelivery(const Dictionary& payload) {
    const UNNotificationRequest request{std::make_shared<const UNNotificationContent>(
        UNNotificationContent::Fields{.title = "T", .userInfo = payload})};
    return costOf([&] {
      std::size_t delivered = 0;
      const auto extension = std::make_shared<MVLNotificationServiceExtension>();
      extension->didReceiveNotificationRequest(
          request, [&](const auto& content) { delivered = content->attachments().size(); });
      memory_.network().finishAll();
      EXPECT_EQ(delivered, payload.array("mvl-atts")->size());
    });
  }

  // Entries whose files are of a type that may be large, and `fileSize` long.
  Array entries(std::size_t count, std::size_t fileSize) {
    std::vector<Value> all;
    for (std::size_t i = 0; i < count; ++i) {
      const std::string url = std::string("https://h/").append(std::to_string(i));
      const std::string start(
          "\0\0\1\xBA"
          "and the rest of it",
          22);
      memory_.network().answer(url, {.body = start, .fileSize = fileSize});
      all.emplace_back(Dictionary{{"att-id", std::to_string(i)}, {"att-url", url}});
    }
    return Array(std::move(all));
  }

 private:
  InMemoryPlatform memory_;
  const std::shared_ptr<CountingText> text_ = std::make_shared<CountingText>();
};

const Dictionary parameters{{"user", "u-42"}, {"push", 4711}, {"price", 2.5}};
const Dictionary tracking{{"url", "https://t.example/seen"},
                          {"display", "d?u=|user|&p=|push|&e=%7Cprice%7C&s=|s|&l=|lang|"},
                          {"params", parameters}};

TEST_F(CostTest, OfADeliveryIsNoMoreThanItWas) {
  const Cost cost =
      costOfDelivery({{"k2tid", "1"}, {"mvl-tk", tracking}, {"mvl-atts", entries(3, 1000)}});
  EXPECT_LE(cost.searches, 0U);
  EXPECT_LE(cost.allocations, 185U);
}

TEST_F(CostTest, OfAFillingIsNoMoreThanItWas) {
  for (const auto& [url, searches, count] :
       {std::tuple{"https://t.example/seen?u=|user|&p=|push|&e=|price|&s=|s|&l=|lang|", 0U, 8U},
        std::tuple{"https://t.example/été?u=|user|&p=%7cpush%7C&e=|price|&s=|s|", 1U, 29U}}) {
    const Cost cost = costOf([&, url = url] {
      EXPECT_EQ(MVLURLHelpers::filledURL(url, parameters)->find("|user|"), std::string::npos);
    });
    EXPECT_LE(cost.searches, searches) << url;
    EXPECT_LE(cost.allocations, count) << url;
  }
}

TEST_F(CostTest, OfAnInspectionIsNoMoreThanItWas) {
  const Dictionary button{{"bid", "buy"}, {"ccp", Dictionary{{"sku", "7"}}}};
  const Dictionary payload{{"aps", Dictionary{{"alert", "Look"}, {"mutable-content", 1}}},
                           {"k2tid", "1"},
                           {"k2tb", Array{button, button}},
                           {"mvl-tk", tracking},
                           {"mvl-atts", entries(3, 0)}};
  const Cost cost = costOf([&] { EXPECT_TRUE(tool::inspect(payload, 1000).recognised); });
  EXPECT_LE(cost.searches, 0U);
  EXPECT_LE(cost.allocations, 141U);
}

// All of the heap that a delivery takes, the in-memory platform's included: a device's extension
// has 12 MB in all.
TEST_F(CostTest, OfADeliveryInMemoryIsSmallHoweverLargeItsFilesAre) {
  for (const std::size_t size :
       {std::size_t{1000}, std::size_t{1000} << 10, std::size_t{50} << 20}) {
    const Cost cost = costOfDelivery({{"k2tid", "1"}, {"mvl-atts", entries(10, size)}});
    EXPECT_LT(cost.peakBytes, std::size_t{256} << 10) << size;
  }
}

}  // namespace
}  // namespace morvelune::testing
