// Property-list values as JSON.
#pragma once

#include <nlohmann/json.hpp>

#include "morvelune/platform/Value.h"

namespace morvelune::tool {

// Integers stay exact. Data, which no JSON text can hold and no JSON payload therefore has, becomes
// null. Recursive: for values of bounded depth.
[[nodiscard]] nlohmann::ordered_json toJson(const Value& value);

}  // namespace morvelune::tool
