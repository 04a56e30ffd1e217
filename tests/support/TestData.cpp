#include "support/TestData.h"

#include <fstream>

#include "support/Media.h"

namespace morvelune::testing {
namespace {

using nlohmann::json;
using nlohmann::ordered_json;

// Puts the values in their places, and adds the indices of these to `used`.
void fill(ordered_json& part, const ordered_json& values, std::set<std::size_t>& used) {
  if (part.is_structured()) {
    for (ordered_json& each : part) fill(each, values, used);
  }
  if (!part.is_string()) return;
  auto text = part.get<std::string>();
  for (std::size_t at = 0; (at = text.find('$', at)) != std::string::npos;) {
    const auto index = static_cast<std::size_t>(text[at + 1] - '1');
    if (index > 8 && ++at) continue;
    used.insert(index);
    if (text.size() == 2) return void(part = values.at(index));
    text.replace(at, 2, values.at(index).get<std::string>());
    at += values[index].get<std::string>().size();
  }
  part = text;
}

}  // namespace

ordered_json testData(const std::string& name) {
  return ordered_json::parse(std::ifstream(MORVELUNE_TEST_FOLDER "/" + name));
}

std::vector<ordered_json> casesOf(const ordered_json& list, Keys known) {
  known.merge(Keys{"about", "for"});
  std::vector<ordered_json> cases;
  for (const ordered_json& row : list) {
    ordered_json each = checked(row, known);
    if (!each.contains("for")) {
      cases.push_back(each);
      continue;
    }
    const ordered_json entries = each["for"];
    each.erase("for");
    if (entries.empty()) throw std::invalid_argument("\"for\": " + each.dump());
    for (const ordered_json& values : entries) {
      ordered_json made = each;
      std::set<std::size_t> used;
      fill(made, values, used);
      if (used.size() != values.size()) throw std::invalid_argument(values.dump() + made.dump());
      cases.push_back(std::move(made));
    }
  }
  return cases;
}

void replaceAll(std::string& text, const std::string& from, const std::string& to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
}

std::string textOf(const ordered_json& given) {
  static const std::map<std::string, std::string> media = {
      {"png", pngBytes()}, {"jpeg", jpegBytes()}, {"mp4", mp4Bytes()}};
  if (given.contains("$data")) return bytesOfData(given);
  if (given.is_object()) return given.dump();
  if (given.is_string()) {
    const auto medium = media.find(given);
    return medium != media.end() ? medium->second : given.get<std::string>();
  }
  std::string text;
  for (const ordered_json& part : given) {
    const int count = part.is_array() ? part[1].get<int>() : 1;
    for (int i = 0; i < count; ++i) text += textOf(part.is_array() ? part[0] : part);
  }
  return text;
}

Reply replyOf(const ordered_json& any) {
  using Fate = Reply::Fate;
  static const std::map<std::string, Fate> fates = {
      {"whole", Fate::whole},   {"reset", Fate::reset}, {"cutShort", Fate::cutShort},
      {"silent", Fate::silent}, {"stall", Fate::stall}, {"headless", Fate::headless},
      {"drip", Fate::drip}};
  const auto given =
      checked(any, {"status", "headers", "body", "size", "delayMs", "requests", "fate"});
  Reply reply{.status = given.value("status", 200),
              .body = textOf(given.value("body", ordered_json(""))),
              .bodySize = given.value("size", 0U),
              .delay = std::chrono::milliseconds(given.value("delayMs", 0)),
              .requests = given.value("requests", 0U),
              .fate = fates.at(given.value("fate", "whole"))};
  const ordered_json headers = given.value("headers", ordered_json::object());
  for (const auto& [name, value] : headers.items()) reply.headers.emplace_back(name, value);
  return reply;
}

double numberOf(const json& number) {
  return number.is_string() ? std::stod(number.get<std::string>()) : number.get<double>();
}

Value valueOf(const json& given) {
  if (given.contains("$data")) return Data::copyOf(bytesOfData(given));
  if (given.is_boolean()) return given.get<bool>();
  if (given.is_number_unsigned()) return given.get<std::uint64_t>();
  if (given.is_number_integer()) return given.get<std::int64_t>();
  if (given.is_number()) return given.get<double>();
  if (given.is_string()) return given.get<std::string>();
  if (given.is_array()) {
    std::vector<Value> values;
    for (const json& each : given) values.push_back(valueOf(each));
    return Array(std::move(values));
  }
  if (given.is_null()) return nullptr;
  std::vector<Dictionary::Entry> entries;
  for (const auto& [key, each] : given.items()) entries.push_back({key, valueOf(each)});
  return Dictionary(std::move(entries));
}

std::string bytesOfData(const json& data) {
  const std::string hex = checked(data, {"$data"}).at("$data");
  std::string bytes;
  for (std::size_t i = 0; i < hex.size(); i += 2) {
    bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
  }
  return bytes;
}

json dataOfBytes(std::span<const std::byte> bytes) {
  std::string hex;
  for (const std::byte byte : bytes) {
    for (const int shift : {4, 0}) {
      hex += "0123456789ABCDEF"[std::to_integer<int>(byte) >> shift & 15];
    }
  }
  return {{"$data", hex}};
}

}  // namespace morvelune::testing
