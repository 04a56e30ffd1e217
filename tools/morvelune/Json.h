// Property-list values as JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "morvelune/platform/Value.h"

namespace morvelune::tool {

// Integers stay exact. Data, which no JSON text can hold and no JSON payload therefore has, becomes
// null. Recursive: for values of bounded depth.
[[nodiscard]] nlohmann::ordered_json toJson(const Value& value);

// Null for nothing.
template <typename T>
[[nodiscard]] nlohmann::ordered_json orNull(const std::optional<T>& value) {
  return value ? nlohmann::ordered_json(*value) : nlohmann::ordered_json();
}

// As text; on one line, unless `indent` says how many blanks a level is indented by and there are
// no more than 16 levels. What a server or a file system says need not be UTF-8: bad bytes are
// replaced rather than thrown at. What acts on a terminal or hides is written as escapes.
[[nodiscard]] std::string dump(const nlohmann::ordered_json& json, int indent = -1);

}  // namespace morvelune::tool
