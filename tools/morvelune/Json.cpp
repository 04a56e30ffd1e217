#include "tools/morvelune/Json.h"

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
  return json.dump(indent, ' ', false, ordered_json::error_handler_t::replace);
}

}  // namespace morvelune::tool
