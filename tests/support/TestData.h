// What the tests keep in JSON files, bytes included, which JSON has as {"$data": "89504E47"}. A key
// that nobody knows makes a test fail, because what is misspelt would go unchecked.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "morvelune/platform/Value.h"
#include "support/LoopbackOrigin.h"

namespace morvelune::testing {

// A file in the folder of the tests, such as "data/tool.json".
[[nodiscard]] nlohmann::ordered_json testData(const std::string& name);

using Keys = std::set<std::string>;

// The same object. Throws if it is none, or has a key that is not in `known`.
template <typename Json>
Json checked(Json object, const Keys& known) {
  for (const auto& [key, value] : object.template get_ref<typename Json::object_t&>()) {
    if (!known.contains(key)) throw std::invalid_argument('"' + key + "\": " + object.dump());
  }
  return object;
}

// The cases of a list, which have the keys `known` and may have "about", a text for the reader. One
// case can stand for several:
//
//   {"operation": "uppercased", "arguments": ["$1"], "result": "$2",
//    "for": [["a", "A"], ["7", "7"], ["", ""]]}
//
// Each entry of "for" makes a case of its own. Its first value stands where "$1" does, its second
// where "$2" does, and so on. Within a longer text such a value must be a text too.
[[nodiscard]] std::vector<nlohmann::ordered_json> casesOf(const nlohmann::ordered_json& list,
                                                          Keys known);

void replaceAll(std::string& text, const std::string& from, const std::string& to);

// A text, the name of a medium ("png", "jpeg", "mp4"), bytes, a list of texts and [text, count], or
// JSON that is to be written out.
[[nodiscard]] std::string textOf(const nlohmann::ordered_json& given);

// {"status": 302, "headers": {"Location": "/b"}, "body": text, "size": 9, "delayMs": 9,
// "requests": 2, "fate": "stall"}. Each key may be missing.
[[nodiscard]] Reply replyOf(const nlohmann::ordered_json& given);

// A number, which JSON has as a text when it is none or infinite: "NaN", "-Infinity".
[[nodiscard]] double numberOf(const nlohmann::json& number);

// The value that JSON stands for, bytes included.
[[nodiscard]] Value valueOf(const nlohmann::json& given);

[[nodiscard]] std::string bytesOfData(const nlohmann::json& data);
[[nodiscard]] nlohmann::json dataOfBytes(std::span<const std::byte> bytes);

}  // namespace morvelune::testing
