// Filling against a plain, slow version of it: a search of the whole text for each parameter.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "morvelune/MVLConstants.h"
#include "morvelune/MVLURLHelpers.h"
#include "support/CountingText.h"
#include "support/InMemoryPlatform.h"

namespace morvelune::testing {
namespace {

using Filled = std::optional<std::string>;
using Names = std::vector<std::string>;

Filled slowlyFilled(std::string url, const Names& order, const Dictionary& parameters,
                    bool required) {
  for (const std::string& key : order) {
    const NSRange tag = MVLURLHelpers::rangeOfTag(key, url);
    if (tag.location == NSNotFound) continue;
    std::string value = parameters.string(key).value();
    if (value == kMVLNullValue && required) return std::nullopt;
    if (value == kMVLNullValue) value = "";
    url.replace(tag.location, tag.length, value);
  }
  return url;
}

class FillingTest : public ::testing::Test {
 protected:
  std::size_t upTo(std::size_t most) { return random_() % (most + 1); }
  const std::string& oneOf(const Names& names) { return names[upTo(names.size() - 1)]; }

  InMemoryPlatform memory_;
  std::mt19937 random_{1};
};

// Names that differ in case, hold a delimiter or are empty, tags that share a bar, values that
// bring whole tags or let their surroundings grow together.
TEST_F(FillingTest, GivesTheResultOfSomeOrder) {
  const Names pieces{"|", "|", "|", "%7c", "%7C", "a", "b", "B", "é", "É", "x", "7c", "%"};
  const Names keys{"", "a", "b", "B", "ab", "é", "É", "ax", "a|b", "|", "a%7cb", "xé"};
  const Names bars{"|", "|", "%7c", "%7c", "%7C"};
  const Names values{"", "", "a", "b", "x", "7c", "%", "%7", "C", "|", "é", "b|", kMVLNullValue};
  const auto tag = [&] { return oneOf(bars) + oneOf(keys) + oneOf(bars); };
  for (int i = 0; i < 20000; ++i) {
    std::string url;
    for (std::size_t n = upTo(14); n > 0; --n) url += upTo(3) == 0 ? tag() : oneOf(pieces);
    Dictionary parameters;
    for (std::size_t n = upTo(4); n > 0; --n) {
      std::string value = oneOf(values);
      for (std::size_t tags = upTo(3); tags > 0 && value != kMVLNullValue; --tags) value += tag();
      parameters = parameters.with(oneOf(keys), value);
    }
    Names order;
    for (const auto& [key, value] : parameters) order.push_back(key);
    const bool required = upTo(1) == 1;
    std::set<Filled> allowed;
    do {
      allowed.insert(slowlyFilled(url, order, parameters, required));
    } while (std::next_permutation(order.begin(), order.end()));
    const Filled filled = MVLURLHelpers::filledURL(url, parameters, required);
    ASSERT_TRUE(allowed.contains(filled))
        << url << " gives " << filled.value_or("nothing") << " with "
        << ::testing::PrintToString(order) << ", not one of " << ::testing::PrintToString(allowed);
  }
}

// Without bars in the values, and with something between the tags, all orders give the same.
TEST_F(FillingTest, GivesTheOneResultOfManyParameters) {
  for (int i = 0; i < 300; ++i) {
    std::vector<Dictionary::Entry> entries;
    Names order;
    std::string url = i % 3 == 0 ? "é?" : "?";
    for (std::size_t n = upTo(60); n > 0; --n) {
      const std::string key = "Key" + std::to_string(upTo(80));
      const std::string bar = oneOf({"|", "|", "%7C", "%7c"});
      url.append(upTo(3) == 0 ? "no" : "").append(bar).append(key).append(bar).append("&=");
      if (upTo(4) == 0) continue;
      entries.push_back({key, oneOf({"", "value", "é", "1"})});
    }
    const Dictionary parameters(std::move(entries));
    for (const auto& [key, value] : parameters) order.push_back(key);
    ASSERT_EQ(MVLURLHelpers::filledURL(url, parameters),
              slowlyFilled(url, order, parameters, false));
  }
}

// The time grows with the template and the parameters, not with their product. ASCII is no matter
// of the platform's, and any other text is looked at once.
TEST_F(FillingTest, LooksAtNothingTwice) {
  const auto text = std::make_shared<CountingText>();
  const auto platform = std::make_shared<Platform>(*Platform::current());
  platform->text = text;
  Platform::install(platform);
  for (const std::string letter : {"a", "é"}) {
    std::vector<Dictionary::Entry> entries;
    std::string url, wanted;
    std::size_t keys = 0;
    for (int i = 0; i < 1000; ++i) {
      const std::string key = letter + std::to_string(i);
      url.append(i % 2 == 0 ? "&=|" : "&=%7C").append(key).append(i % 2 == 0 ? "|" : "%7C");
      wanted.append("&=").append(letter);
      entries.push_back({key, letter});
      keys += key.size();
    }
    text->lookedAt = 0;
    EXPECT_EQ(MVLURLHelpers::filledURL(url, Dictionary(entries)), wanted);
    EXPECT_LE(text->lookedAt, letter == "a" ? 0 : url.size() + keys + wanted.size());
  }
}

}  // namespace
}  // namespace morvelune::testing
