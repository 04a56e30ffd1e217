#include "support/TestData.h"

#include <fstream>

#include "support/Media.h"

namespace morvelune::testing {

nlohmann::ordered_json testData(const std::string& name) {
  return nlohmann::ordered_json::parse(std::ifstream(MORVELUNE_TEST_FOLDER "/" + name));
}

std::string textOf(const nlohmann::ordered_json& given) {
  static const std::map<std::string, std::string> media = {
      {"png", pngBytes()}, {"jpeg", jpegBytes()}, {"mp4", mp4Bytes()}};
  if (given.contains("$data")) return bytesOfData(given);
  if (given.is_object()) return given.dump();
  if (given.is_string()) {
    const auto medium = media.find(given);
    return medium != media.end() ? medium->second : given.get<std::string>();
  }
  std::string text;
  for (const nlohmann::ordered_json& part : given) {
    const int count = part.is_array() ? part[1].get<int>() : 1;
    for (int i = 0; i < count; ++i) text += textOf(part.is_array() ? part[0] : part);
  }
  return text;
}

Reply replyOf(const nlohmann::ordered_json& given) {
  using Fate = Reply::Fate;
  static const std::map<std::string, Fate> fates = {
      {"whole", Fate::whole},   {"reset", Fate::reset}, {"cutShort", Fate::cutShort},
      {"silent", Fate::silent}, {"stall", Fate::stall}, {"headless", Fate::headless}};
  Reply reply{.status = given.value("status", 200),
              .body = textOf(given.value("body", nlohmann::ordered_json(""))),
              .bodySize = given.value("size", 0U),
              .delay = std::chrono::milliseconds(given.value("delayMs", 0)),
              .fate = fates.at(given.value("fate", "whole"))};
  if (!given.contains("headers")) return reply;
  for (const auto& [name, value] : given["headers"].items()) {
    reply.headers.emplace_back(name, value);
  }
  return reply;
}

double numberOf(const nlohmann::json& number) {
  return number.is_string() ? std::stod(number.get<std::string>()) : number.get<double>();
}

Value valueOf(const nlohmann::json& given) {
  if (given.contains("$data")) return Data::copyOf(bytesOfData(given));
  if (given.is_boolean()) return given.get<bool>();
  if (given.is_number_unsigned()) return given.get<std::uint64_t>();
  if (given.is_number_integer()) return given.get<std::int64_t>();
  if (given.is_number()) return given.get<double>();
  if (given.is_string()) return given.get<std::string>();
  if (given.is_array()) {
    std::vector<Value> values;
    for (const nlohmann::json& each : given) values.push_back(valueOf(each));
    return Array(std::move(values));
  }
  if (given.is_null()) return nullptr;
  std::vector<Dictionary::Entry> entries;
  for (const auto& [key, each] : given.items()) entries.push_back({key, valueOf(each)});
  return Dictionary(std::move(entries));
}

std::string bytesOfData(const nlohmann::json& data) {
  const std::string hex = data.at("$data");
  std::string bytes;
  for (std::size_t i = 0; i < hex.size(); i += 2) {
    bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
  }
  return bytes;
}

nlohmann::json dataOfBytes(std::span<const std::byte> bytes) {
  std::string hex;
  for (const std::byte byte : bytes) {
    for (const int shift : {4, 0}) {
      hex += "0123456789ABCDEF"[std::to_integer<int>(byte) >> shift & 15];
    }
  }
  return {{"$data", hex}};
}

}  // namespace morvelune::testing
