#include "tools/morvelune/Payload.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <istream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <streambuf>
#include <system_error>
#include <utility>
#include <vector>

namespace morvelune::tool {
namespace {

using nlohmann::json;

// The text as a stream that tells how far it was read.
class Source : public std::streambuf {
 public:
  explicit Source(std::string& text) { setg(text.data(), text.data(), text.data() + text.size()); }
  [[nodiscard]] std::size_t consumed() const { return static_cast<std::size_t>(gptr() - eback()); }
};

// The error at a byte of the text, counted from 1; one past the end is allowed.
PayloadError errorAt(std::string_view text, std::size_t position, std::string message) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  std::string_view before = text.substr(0, std::max<std::size_t>(position, 1) - 1);
  if (before.starts_with(byteOrderMark)) before.remove_prefix(byteOrderMark.size());
  const auto line = 1 + std::count(before.begin(), before.end(), '\n');
  before.remove_prefix(before.rfind('\n') + 1);
  const auto startsCharacter = [](char c) { return (c & 0xC0) != 0x80; };
  const auto column = 1 + std::count_if(before.begin(), before.end(), startsCharacter);
  return {static_cast<std::size_t>(line), static_cast<std::size_t>(column), std::move(message)};
}

// What the parser says, without its own way to tell the place and without what it read last, which
// may be anything.
std::string wording(const nlohmann::detail::exception& error) {
  constexpr int numberOverflow = 406;
  if (error.id == numberOverflow) return "number out of range";
  std::string message = error.what();
  message.erase(std::min(message.find("; last read: "), message.size()));
  const std::size_t place = message.find(": ");
  return place == std::string::npos ? message : message.substr(place + 2);
}

// Builds values from the parser's events, without recursion.
class ValueBuilder : public json::json_sax_t {
 public:
  explicit ValueBuilder(const Source& source) : source_(source) {}

  [[nodiscard]] const Value& root() const { return root_; }
  // Where the text is wrong, counted from 1, and why.
  [[nodiscard]] const std::optional<std::pair<std::size_t, std::string>>& error() const {
    return error_;
  }

  bool null() override { return add(nullptr); }
  bool boolean(bool value) override { return add(value); }
  bool number_integer(std::int64_t value) override { return add(value); }
  bool number_unsigned(std::uint64_t value) override { return add(value); }
  bool number_float(double value, const std::string&) override { return add(value); }
  bool string(std::string& value) override { return add(std::move(value)); }
  bool binary(json::binary_t&) override { return false; }  // no such thing in text
  bool start_object(std::size_t) override { return open(true); }
  bool start_array(std::size_t) override { return open(false); }
  bool end_object() override { return close(); }
  bool end_array() override { return close(); }
  bool key(std::string& key) override {
    open_.back().key = std::move(key);
    return true;
  }
  bool parse_error(std::size_t position, const std::string&,
                   const nlohmann::detail::exception& error) override {
    error_ = {position, wording(error)};
    return false;
  }

 private:
  struct Container {
    bool isObject = false;
    std::string key;  // of the entry that is being read
    std::vector<Dictionary::Entry> entries;
    std::vector<Value> values;
  };

  bool open(bool isObject) {
    if (open_.size() == maximumPayloadDepth) {
      error_ = {source_.consumed(),
                "nested deeper than " + std::to_string(maximumPayloadDepth) + " levels"};
      return false;
    }
    open_.push_back({.isObject = isObject, .key = {}, .entries = {}, .values = {}});
    return true;
  }

  bool close() {
    Container closed = std::move(open_.back());
    open_.pop_back();
    if (closed.isObject) return add(Dictionary(std::move(closed.entries)));
    return add(Array(std::move(closed.values)));
  }

  bool add(Value value) {
    if (open_.empty()) {
      root_ = std::move(value);
    } else if (Container& parent = open_.back(); parent.isObject) {
      parent.entries.push_back({std::move(parent.key), std::move(value)});
    } else {
      parent.values.push_back(std::move(value));
    }
    return true;
  }

  const Source& source_;
  std::vector<Container> open_;
  Value root_;
  std::optional<std::pair<std::size_t, std::string>> error_;
};

struct CloseFile {
  void operator()(std::FILE* file) const {
    if (file != stdin) std::fclose(file);
  }
};

PayloadError unreadable(int error) {
  return {1, 1, "cannot be read: " + std::generic_category().message(error)};
}

std::variant<std::string, PayloadError> readText(const std::string& name) {
  const std::unique_ptr<std::FILE, CloseFile> file(name == "-" ? stdin
                                                               : std::fopen(name.c_str(), "rbe"));
  if (!file) return unreadable(errno);
  std::string text(maximumPayloadBytes + 1, '\0');
  text.resize(std::fread(text.data(), 1, text.size(), file.get()));
  if (std::ferror(file.get()) != 0) return unreadable(errno);
  return text;
}

}  // namespace

std::string describe(const PayloadError& error) {
  return std::to_string(error.line) + ':' + std::to_string(error.column) + ": " + error.message;
}

std::variant<Payload, PayloadError> parsePayload(std::string text) {
  if (text.size() > maximumPayloadBytes) {
    return PayloadError{1, 1, "larger than " + std::to_string(maximumPayloadBytes) + " bytes"};
  }
  Source source(text);
  std::istream stream(&source);
  ValueBuilder builder(source);
  json::sax_parse(stream, &builder);
  if (builder.error()) return errorAt(text, builder.error()->first, builder.error()->second);
  // The parser takes a zero byte for the end of the text.
  if (const auto zero = text.find('\0'); zero != std::string::npos) {
    return errorAt(text, zero + 1, "syntax error - invalid zero byte");
  }
  if (auto content = builder.root().dictionary()) return Payload{std::move(*content), text.size()};
  return errorAt(text, text.find_first_not_of("\xEF\xBB\xBF \t\r\n") + 1, "not a JSON object");
}

std::variant<Payload, PayloadError> readPayload(const std::string& file) {
  auto text = readText(file);
  if (auto* error = std::get_if<PayloadError>(&text)) return std::move(*error);
  return parsePayload(std::move(std::get<std::string>(text)));
}

}  // namespace morvelune::tool
