// What a delivery comes to, in words for people and as JSON for programs.
#pragma once

#include <map>
#include <string>

#include "tools/morvelune/Delivery.h"
#include "tools/morvelune/Findings.h"

namespace morvelune::tool {

struct Report {
  bool recognised = false;  // this system sent the push
  Findings findings;        // that its payload alone gives
  Outcome outcome;
  std::map<std::string, std::string> keptPaths;  // of attachments, by where they were staged
  std::string keepError;                         // why some could not be kept; "" when all were
};

// Both read the sizes of the attachments' files, and both texts end with a line feed.
//
// A few aligned lines; control characters in what payload and servers say are written escaped.
[[nodiscard]] std::string textReport(const Report& report);
// One JSON object, on one line.
[[nodiscard]] std::string jsonReport(const Report& report);

}  // namespace morvelune::tool
