#include "support/Conformance.h"

#include <sstream>

namespace morvelune::testing {
namespace {

using nlohmann::json;

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
  device.merge_patch(entry.value("device", json::object()));
  ConformanceCase made;
  made.operation = entry.at("operation");
  made.receiver = entry.value("receiver", json());
  made.arguments = entry.at("arguments");
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
  const auto found = device.find(key);
  return found == device.end() ? std::nullopt : std::optional(found->get<T>());
}

std::string printed(const json& any) {
  return any.dump(-1, ' ', false, json::error_handler_t::replace);
}

}  // namespace

const std::vector<ConformanceCase>& conformanceCases() {
  static const std::vector<ConformanceCase> all = [] {
    const json table = testData("conformance.json");
    std::vector<ConformanceCase> cases;
    for (const json& entry : table.at("cases")) cases.push_back(caseOf(entry, table.at("device")));
    return cases;
  }();
  return all;
}

void prepare(InMemoryPlatform& memory, const ConformanceCase& each) {
  const json& device = each.device;
  memory.device().vendor = member<std::string>(device, "vendor");
  memory.locale().country = member<std::string>(device, "country");
  memory.locale().languages = member<std::vector<std::string>>(device, "languages");
  const auto system = device.at("system").get<std::vector<int>>();
  memory.device().system = {system.at(0), system.at(1), system.at(2)};
  const auto screen = member<json>(device, "screen");
  const auto origin = member<json>(device, "origin");
  if (!screen) return;
  std::optional<Point> fixed;
  if (origin) fixed = Point{numberOf(origin->at(0)), numberOf(origin->at(1))};
  memory.device().screen = std::make_shared<const InMemoryScreen>(
      Size{numberOf(screen->at(0)), numberOf(screen->at(1))}, fixed);
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
