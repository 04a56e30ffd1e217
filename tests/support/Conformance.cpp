#include "support/Conformance.h"

#include <sstream>

namespace morvelune::testing {
namespace {

using nlohmann::json;

const Keys deviceKeys{"vendor", "screen", "origin", "country", "languages", "system"};

// "argument 2 k2tb.0.ccp"
ConformancePath pathOf(const std::string& text) {
  ConformancePath path;
  std::istringstream words(text);
  std::string step;
  words >> step >> path.argument >> std::ws;
  --path.argument;
  while (std::getline(words, step, '.')) path.steps.push_back(step);
  return path;
}

ConformanceCase caseOf(const json& entry, json device) {
  device.update(checked(entry.value("device", json::object()), deviceKeys));
  ConformanceCase made;
  made.operation = entry.at("operation");
  made.receiver = entry.value("receiver", json());
  made.arguments = entry.value("arguments", json::array());
  made.result = entry.at("result");
  if (entry.contains("same")) made.same = pathOf(entry["same"]);
  if (entry.contains("log")) made.log = entry["log"].get<std::vector<std::string>>();
  made.device = std::move(device);
  made.rule = entry.value("rule", "");
  made.text = entry.dump();
  return made;
}

template <typename T>
std::optional<T> member(const json& device, const char* key) {
  const json& known = device.at(key);
  return known.is_null() ? std::nullopt : std::optional(known.get<T>());
}

// The two numbers of a member.
template <typename T>
std::optional<T> pairOf(const json& device, const char* key) {
  const auto numbers = member<json>(device, key);
  return numbers ? std::optional(T{numberOf(numbers->at(0)), numberOf(numbers->at(1))})
                 : std::nullopt;
}

std::string printed(const json& any) {
  return any.dump(-1, ' ', false, json::error_handler_t::replace);
}

}  // namespace

const std::vector<ConformanceCase>& conformanceCases() {
  static const std::vector<ConformanceCase> all = [] {
    const auto table = checked(testData("conformance.json"), {"about", "device", "cases"});
    const Keys keys{"operation", "receiver", "arguments", "result",
                    "same",      "log",      "device",    "rule"};
    std::vector<ConformanceCase> cases;
    for (const auto& entry : casesOf(table.at("cases"), keys)) {
      cases.push_back(caseOf(entry, table.at("device")));
    }
    return cases;
  }();
  return all;
}

void prepare(InMemoryPlatform& memory, const ConformanceCase& each) {
  InMemoryDevice& device = memory.device();
  device.vendor = member<std::string>(each.device, "vendor");
  device.country = member<std::string>(each.device, "country");
  device.languages = member<std::vector<std::string>>(each.device, "languages");
  device.system = each.device.at("system");
  device.size = pairOf<Size>(each.device, "screen");
  device.fixedOrigin = pairOf<Point>(each.device, "origin");
}

std::string fault(const ConformanceCase& each, const json& result,
                  const std::vector<std::string>& log) {
  json compared = result;
  if (each.result == json{{"location", "NSNotFound"}} && result.is_object()) {
    compared.erase("length");
  }
  if (compared != each.result) return each.text + "\ngives " + printed(result);
  if (each.log && log != *each.log) return each.text + "\nlogs " + printed(log);
  return "";
}

}  // namespace morvelune::testing
