#include "morvelune/platform/Value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "support/TestData.h"

namespace morvelune {
namespace {

TEST(ValueTest, EveryLookupIsTyped) {
  const Dictionary all{{"null", nullptr},       {"flag", true},
                       {"number", 7},           {"real", 7.0},
                       {"text", "7"},           {"data", Data::copyOf("7")},
                       {"list", Array{1, "2"}}, {"map", Dictionary{{"k", 1}}}};
  // Each key answers to its own type and to no other, nor does a key that is not there.
  for (const char* key :
       {"null", "flag", "number", "real", "text", "data", "list", "map", "none"}) {
    const std::string name = key;
    EXPECT_EQ(all.contains(key), name != "none") << key;
    EXPECT_EQ(all.boolean(key).has_value(), name == "flag") << key;
    EXPECT_EQ(all.integer(key).has_value(), name == "number") << key;
    EXPECT_EQ(all.real(key).has_value(), name == "real") << key;
    EXPECT_EQ(all.string(key).has_value(), name == "text") << key;
    EXPECT_EQ(all.data(key).has_value(), name == "data") << key;
    EXPECT_EQ(all.array(key).has_value(), name == "list") << key;
    EXPECT_EQ(all.dictionary(key).has_value(), name == "map") << key;
  }
  EXPECT_TRUE(all.value("null")->isNull());
  EXPECT_FALSE(all.value("none"));
}

TEST(ValueTest, IntegersKeepTheirWholeRange) {
  const auto largest = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(Value(largest).unsignedInteger(), largest);
  EXPECT_EQ(Value(largest).integer(), std::nullopt);
  EXPECT_EQ(Value(largest).type(), Value::Type::integer);
  EXPECT_EQ(Value(0).unsignedInteger(), 0U);
  EXPECT_EQ(Value(-1).unsignedInteger(), std::nullopt);
  EXPECT_EQ(Value(std::uint64_t{5}), Value(5));  // one number, one value
  EXPECT_FALSE(Value(1) == Value(true));
  EXPECT_FALSE(Value(1) == Value(1.0));
}

TEST(ValueTest, DictionariesAreMapsWithUniqueSortedKeys) {
  const Dictionary dictionary{{"b", 1}, {"a", 2}, {"b", 3}, {"B", 4}, {"", 5}};
  std::string entries;
  for (const auto& [key, value] : dictionary) {
    entries += key + std::to_string(value.integer().value_or(0)) + " ";
  }
  EXPECT_EQ(entries, "5 B4 a2 b3 ");  // the last one of a key counts
}

TEST(ValueTest, DerivingLeavesTheOriginalAlone) {
  const Dictionary original{{"a", 1}, {"b", 2}};
  EXPECT_EQ(original.with("a", 9), (Dictionary{{"a", 9}, {"b", 2}}));
  EXPECT_EQ(original.with({{"b", 8}, {"c", 7}}), (Dictionary{{"a", 1}, {"b", 8}, {"c", 7}}));
  EXPECT_EQ(original.without(std::vector<std::string_view>{"b", "z"}), (Dictionary{{"a", 1}}));
  EXPECT_EQ(original, (Dictionary{{"a", 1}, {"b", 2}}));
}

TEST(ValueTest, WhatIsNotEqualToItselfLeavesItsContainerEqual) {
  const Array list{NAN};
  const Dictionary map{{"k", NAN}};
  EXPECT_EQ(Array(list), list);
  EXPECT_EQ(Dictionary(map), map);
}

TEST(ValueTest, AnOriginStaysWithItsValueAlone) {
  const Origin text = std::make_shared<int>();
  const Origin map = std::make_shared<int>();
  const Dictionary made({{"s", Value("v").withOrigin(text)}, {"o", Value::opaque(map)}}, map);
  const Dictionary derived = made.with("n", 1);
  EXPECT_EQ(Value(made).origin(), map);
  EXPECT_EQ(Value(Array({}, map)).origin(), map);
  EXPECT_EQ(derived.origin(), nullptr);
  EXPECT_EQ(derived.value("s")->origin(), text);
  EXPECT_EQ(derived.value("s"), Value("v"));
  EXPECT_EQ(derived.value("o"), Value::opaque(map));
  EXPECT_EQ(derived.value("o")->origin(), map);
  EXPECT_FALSE(Value::opaque(map) == Value::opaque(text));
  EXPECT_TRUE(made.isSameObject(Dictionary({}, map)));
  EXPECT_TRUE(Array({}, map).isSameObject(Array({1}, map)));
  EXPECT_FALSE(made.isSameObject(Dictionary({}, text)));
  EXPECT_FALSE(Array({}, map).isSameObject(Array({}, text)));
  EXPECT_FALSE(Dictionary(std::vector<Dictionary::Entry>()).isSameObject(Dictionary({}, map)));
}

TEST(ValueTest, ArraysAnswerForAnyIndex) {
  const Array array{1, Dictionary{{"k", 1}}};
  EXPECT_EQ(array.value(0), Value(1));
  EXPECT_TRUE(array.value(2).isNull());
  EXPECT_FALSE(array.dictionary(0));
  EXPECT_TRUE(array.dictionary(1));
  EXPECT_FALSE(Array().dictionary(0));
}

TEST(ValueTest, ABufferIsTheSameBytesOfTheSameOwner) {
  const auto owner = std::make_shared<const std::string>("abab");
  const auto all = std::as_bytes(std::span(*owner));
  const Data first(owner, all.first(2));
  EXPECT_TRUE(first.isSameObject(Data(owner, all.first(2))));
  EXPECT_FALSE(first.isSameObject(Data(owner, all.first(3))));
  EXPECT_FALSE(first.isSameObject(Data(owner, all.last(2))));
  EXPECT_FALSE(first.isSameObject(Data(std::make_shared<int>(), all.first(2))));
  EXPECT_EQ(first, Data(owner, all.last(2)));
}

TEST(ValueTest, EqualContainersHoldEqualValuesInEqualPlaces) {
  const auto make = [] {
    return testing::valueOf(nlohmann::json::parse(
        R"([[], [1], [2], [1, 1], [[]], {}, {"a": 1}, {"a": 2}, {"b": 1}, {"a": 1, "b": 1}, {"a": [1]}])"));
  };
  const Array all = *make().array();
  const Array others = *make().array();
  for (std::size_t i = 0; i < all.size(); ++i) {
    for (std::size_t j = 0; j < all.size(); ++j) EXPECT_EQ(all.value(i) == others.value(j), i == j);
  }
}

// Recursion would overflow the stack long before this depth.
TEST(ValueTest, ReleasesAndComparesDeepNestingWithoutDeepRecursion) {
  const auto nested = [](int innermost) {
    Value deep = innermost;
    for (int level = 0; level < 60'000; ++level) {
      deep = level < 30'000 ? Value(Array{deep, level}) : Value(Dictionary{{"k", deep}});
    }
    return deep;
  };
  EXPECT_EQ(nested(1), nested(1));
  EXPECT_FALSE(nested(1) == nested(2));
}

}  // namespace
}  // namespace morvelune
