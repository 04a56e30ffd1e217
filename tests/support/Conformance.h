// The table of what every face of the library must answer, tests/conformance.json, for the runner
// of a face. A case names an operation, what it is given and what it gives back:
//
//   {"operation": "mvl_URLDecodeString", "receiver": "a%20b", "arguments": [], "result": "a b"}
//
// One without "arguments" has none. null stands for an absent argument or result. These arguments
// are objects of the platform:
//
//   {"$notification": {"title": "T", "subtitle": "S", "body": "B", "userInfo": {"k": 1}}}
//   {"$request": {...the same...}}
//   {"$response": {"actionIdentifier": "b1", ...the same...}}
//   {"$data": "89504E47"}, which may also be a part of a result
//
// and their members may be missing. A URL is given back as its text, and a range as {"location": 1,
// "length": 2}; of one that is not found the location "NSNotFound" alone counts. A case may add:
//
//   "same": "argument 2 k2tb.0.ccp"  the result is this very object, found along the path in the
//                                    argument (from 1), whose first step in a platform's object is
//                                    "userInfo"; without a path it is the argument itself
//   "log": ["line"]                  exactly these lines are written to the system log
//   "device": {"vendor": null}       what differs from the device at the top of the table, where
//   null
//                                    is what is not known; a number of "screen" or "origin" may
//                                    also be "NaN" or "-Infinity"
//   "rule": "text"                   what the platform's own operation must do for this result
//   "about": "text"                  for the reader
//   "for": [[value, result]]         several cases at once, as TestData.h tells
#pragma once

#include <nlohmann/json.hpp>

#include "support/InMemoryPlatform.h"
#include "support/TestData.h"

namespace morvelune::testing {

// A member of an argument, or the argument itself when there are no steps.
struct ConformancePath {
  std::size_t argument = 0;  // its index, from 0
  std::vector<std::string> steps;
};

struct ConformanceCase {
  std::string operation;
  nlohmann::json receiver;   // null for an operation without one
  nlohmann::json arguments;  // an array
  nlohmann::json result;
  std::optional<ConformancePath> same;
  std::optional<std::vector<std::string>> log;
  nlohmann::json device;  // whole
  std::string rule;       // the platform's, without which the result is another; mostly empty
  std::string text;       // the case as JSON, to name it in a report
};

// All cases, in the order of the table. Throws when the table cannot be read.
[[nodiscard]] const std::vector<ConformanceCase>& conformanceCases();

// Gives the platform the case's device and locale.
void prepare(InMemoryPlatform& memory, const ConformanceCase& each);

// What is wrong with a result and with the lines logged meanwhile; empty when nothing is. Numbers
// compare by value.
[[nodiscard]] std::string fault(const ConformanceCase& each, const nlohmann::json& result,
                                const std::vector<std::string>& log);

}  // namespace morvelune::testing
