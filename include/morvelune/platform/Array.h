// Array: an immutable ordered list of values. Include Value.h, which completes it.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <optional>
#include <vector>

#include "morvelune/platform/Export.h"
#include "morvelune/platform/Origin.h"

namespace morvelune {

class Dictionary;
class Value;

// Array{x} with an array x makes a list that holds x; copy with Array(x).
class MORVELUNE_API Array {
 public:
  Array() = default;
  Array(std::initializer_list<Value> values);
  explicit Array(std::vector<Value> values, Origin origin = nullptr);

  [[nodiscard]] std::size_t size() const;
  [[nodiscard]] bool empty() const { return size() == 0; }
  // The value at `index`; null when there is none.
  [[nodiscard]] Value value(std::size_t index) const;
  // The dictionary at `index`; empty when there is none or the value is of another type.
  [[nodiscard]] std::optional<Dictionary> dictionary(std::size_t index) const;
  // Iteration in order; valid while any handle on this array lives.
  [[nodiscard]] const Value* begin() const;
  [[nodiscard]] const Value* end() const;

  // The object that this array was made from; null when there is none.
  [[nodiscard]] Origin origin() const;
  // True for two handles on the same storage, and for arrays of the same origin; all default-made
  // arrays are one object.
  [[nodiscard]] bool isSameObject(const Array& other) const;
  // True for the same object; else compares the values, in order.
  MORVELUNE_API friend bool operator==(const Array& left, const Array& right);

 private:
  struct Storage;
  std::shared_ptr<const Storage> storage_;
};

}  // namespace morvelune
