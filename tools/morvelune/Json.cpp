#include "tools/morvelune/Json.h"

#include <algorithm>

#include "platform/Printable.h"

namespace morvelune::tool {
namespace {

using nlohmann::ordered_json;

ordered_json objectOf(const Dictionary& dictionary) {
  ordered_json::object_t object;
  // Through the base class: the keys are known to differ, and looking each one up again would take
  // time that grows with the square of their number.
  ordered_json::object_t::Container& entries = object;
  for (const auto& [key, value] : dictionary) entries.emplace_back(key, toJson(value));
  return object;
}

ordered_json arrayOf(const Array& array) {
  ordered_json::array_t values;
  for (const Value& value : array) values.push_back(toJson(value));
  return values;
}

// Deeper than this, the blanks before a line would soon be more than what stands on it.
constexpr int deepestIndented = 16;

bool isDeeperThan(const ordered_json& json, int levels) {
  if (!json.is_structured()) return false;
  return levels == 0 || std::any_of(json.begin(), json.end(), [levels](const ordered_json& each) {
           return isDeeperThan(each, levels - 1);
         });
}

}  // namespace

ordered_json toJson(const Value& value) {
  switch (value.type()) {
    case Value::Type::boolean:
      return *value.boolean();
    case Value::Type::integer:
      return *value.visitInteger([](auto number) { return ordered_json(number); });
    case Value::Type::real:
      return *value.real();
    case Value::Type::string:
      return *value.string();
    case Value::Type::array:
      return arrayOf(*value.array());
    case Value::Type::dictionary:
      return objectOf(*value.dictionary());
    case Value::Type::null:
    case Value::Type::data:
    case Value::Type::opaque:
      break;
  }
  return nullptr;
}

std::string dump(const ordered_json& json, int indent) {
  if (indent > 0 && isDeeperThan(json, deepestIndented)) indent = -1;
  return printableJson(json.dump(indent, ' ', false, ordered_json::error_handler_t::replace));
}

}  // namespace morvelune::tool
