// What the tests keep in JSON files, bytes included, which JSON has as {"$data": "89504E47"}.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <span>
#include <string>

#include "morvelune/platform/Value.h"
#include "support/LoopbackOrigin.h"

namespace morvelune::testing {

// A file in the folder of the tests, such as "data/tool.json".
[[nodiscard]] nlohmann::ordered_json testData(const std::string& name);

// A text, the name of a medium ("png", "jpeg", "mp4"), bytes, a list of texts and [text, count], or
// JSON that is to be written out.
[[nodiscard]] std::string textOf(const nlohmann::ordered_json& given);

// {"status": 302, "headers": {"Location": "/b"}, "body": text, "size": 9, "delayMs": 9, "fate":
// "stall"}, each of which may be missing.
[[nodiscard]] Reply replyOf(const nlohmann::ordered_json& given);

// A number, which JSON has as a text when it is none or infinite: "NaN", "-Infinity".
[[nodiscard]] double numberOf(const nlohmann::json& number);

// The value that JSON stands for, bytes included.
[[nodiscard]] Value valueOf(const nlohmann::json& given);

[[nodiscard]] std::string bytesOfData(const nlohmann::json& data);
[[nodiscard]] nlohmann::json dataOfBytes(std::span<const std::byte> bytes);

}  // namespace morvelune::testing
