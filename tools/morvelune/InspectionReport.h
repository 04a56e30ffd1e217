// An inspection in words for people and as JSON for programs.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "tools/morvelune/Inspection.h"

namespace morvelune::tool {

// A few lines below `name`; control characters in what the payload says are written escaped.
[[nodiscard]] std::string textReport(const std::string& name, const Inspection& inspection);
// The members of `head`, which tell where the payload came from, and those of the inspection.
[[nodiscard]] nlohmann::ordered_json jsonReport(nlohmann::ordered_json head,
                                                const Inspection& inspection);

// The findings alone, below a heading; empty when there are none.
[[nodiscard]] std::string findingsText(const Findings& findings);
[[nodiscard]] nlohmann::ordered_json findingsJson(const Findings& findings);
// How many findings of each code are not there; empty when all are.
[[nodiscard]] nlohmann::ordered_json moreJson(const Findings& findings);

}  // namespace morvelune::tool
