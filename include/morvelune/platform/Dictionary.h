// Dictionary: an immutable map from strings to values. Include Value.h, which completes it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "morvelune/platform/Array.h"
#include "morvelune/platform/Data.h"
#include "morvelune/platform/Export.h"
#include "morvelune/platform/Origin.h"

namespace morvelune {

// Enumerated in ascending byte order of its keys.
class MORVELUNE_API Dictionary {
 public:
  struct Entry;

  Dictionary() = default;
  // Of entries with equal keys the last one counts.
  Dictionary(std::initializer_list<Entry> entries);
  explicit Dictionary(std::vector<Entry> entries, Origin origin = nullptr);

  [[nodiscard]] std::size_t size() const;
  [[nodiscard]] bool empty() const { return size() == 0; }
  // True when the key is present, whatever its value, null included.
  [[nodiscard]] bool contains(std::string_view key) const;
  // The value under `key`; empty when the key is missing.
  [[nodiscard]] std::optional<Value> value(std::string_view key) const;

  // Typed lookups: empty when the key is missing or its value is of another type.
  [[nodiscard]] std::optional<bool> boolean(std::string_view key) const;
  [[nodiscard]] std::optional<std::int64_t> integer(std::string_view key) const;
  [[nodiscard]] std::optional<double> real(std::string_view key) const;
  [[nodiscard]] std::optional<std::string> string(std::string_view key) const;
  // The same without a copy, valid while any handle on this dictionary lives.
  [[nodiscard]] std::optional<std::string_view> stringView(std::string_view key) const;
  [[nodiscard]] std::optional<Data> data(std::string_view key) const;
  [[nodiscard]] std::optional<Array> array(std::string_view key) const;
  [[nodiscard]] std::optional<Dictionary> dictionary(std::string_view key) const;

  // A new dictionary in which `value` stands under `key`.
  [[nodiscard]] Dictionary with(std::string_view key, Value value) const;
  // A new dictionary with the entries of both; those of `other` replace those of equal key.
  [[nodiscard]] Dictionary with(const Dictionary& other) const;
  // A new dictionary without `keys`; a key that is not present is skipped.
  [[nodiscard]] Dictionary without(std::span<const std::string_view> keys) const;

  // Iteration in key order; valid while any handle on this dictionary lives.
  [[nodiscard]] const Entry* begin() const;
  [[nodiscard]] const Entry* end() const;

  // The object that this dictionary was made from; null when there is none. A dictionary
  // derived from another has none.
  [[nodiscard]] Origin origin() const;
  // True for two handles on the same storage, and for dictionaries of the same origin; all
  // default-made dictionaries are one object.
  [[nodiscard]] bool isSameObject(const Dictionary& other) const;
  // True for the same object; else compares keys and values.
  MORVELUNE_API friend bool operator==(const Dictionary& left, const Dictionary& right);

 private:
  struct Storage;
  [[nodiscard]] const Value* find(std::string_view key) const;
  std::shared_ptr<const Storage> storage_;
};

}  // namespace morvelune
