// Value: one immutable property-list value, and its containers Array, Dictionary and Data.
//
//   Dictionary payload{{"k2tid", "1"}, {"mvl-tk", Dictionary{{"url", "https://t.example"}}}};
//   if (auto tracking = payload.dictionary("mvl-tk")) use(tracking->string("url"));
//
// A container is a handle on shared immutable storage: copying one copies a pointer, and
// isSameObject() tells whether two handles name the same storage. Lookups are typed and never
// throw: a missing key and a value of another type both give an empty optional. All of it may be
// read from any thread. However deeply containers are nested, releasing them takes constant stack.
//
// A platform whose own objects stand for such values hands them in with their Origin, so that what
// passes through the library unchanged comes out as the very object that went in.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace morvelune {

class Value;

// Keeps the platform's object alive that a value was made from; null when there is none. The
// library passes it on and never looks into it.
using Origin = std::shared_ptr<const void>;

// An immutable byte buffer; its bytes may be a private copy or memory that an owner keeps mapped.
class Data {
 public:
  // The empty buffer.
  Data() = default;
  // Takes the bytes over.
  explicit Data(std::vector<std::byte> bytes);
  // Names `bytes` without copying them; `owner` keeps them valid and unchanged while it lives.
  Data(std::shared_ptr<const void> owner, std::span<const std::byte> bytes);
  // A private copy of `bytes`.
  [[nodiscard]] static Data copyOf(std::string_view bytes);

  [[nodiscard]] std::span<const std::byte> bytes() const { return bytes_; }
  [[nodiscard]] std::size_t size() const { return bytes_.size(); }
  [[nodiscard]] bool empty() const { return bytes_.empty(); }
  // True for two handles on the same buffer; all empty default-made buffers are one object.
  [[nodiscard]] bool isSameObject(const Data& other) const { return owner_ == other.owner_; }
  // Compares the bytes.
  friend bool operator==(const Data& left, const Data& right);

 private:
  std::shared_ptr<const void> owner_;
  std::span<const std::byte> bytes_;
};

// An immutable ordered list of values. Array{x} with an array x makes a list that holds x; copy
// with Array(x).
class Array {
 public:
  Array() = default;
  Array(std::initializer_list<Value> values);
  explicit Array(std::vector<Value> values, Origin origin = nullptr);

  [[nodiscard]] std::size_t size() const;
  [[nodiscard]] bool empty() const { return size() == 0; }
  // The value at `index`; null when there is none.
  [[nodiscard]] Value value(std::size_t index) const;
  // The dictionary at `index`; empty when there is none or the value is of another type.
  [[nodiscard]] std::optional<class Dictionary> dictionary(std::size_t index) const;
  // Iteration in order; valid while any handle on this array lives.
  [[nodiscard]] const Value* begin() const;
  [[nodiscard]] const Value* end() const;

  // The object that this array was made from.
  [[nodiscard]] Origin origin() const;
  // True for two handles on the same storage, and for arrays of the same origin; all default-made
  // arrays are one object.
  [[nodiscard]] bool isSameObject(const Array& other) const;
  // Compares the values, in order.
  friend bool operator==(const Array& left, const Array& right);

 private:
  struct Storage;
  std::shared_ptr<const Storage> storage_;
};

// An immutable map from strings to values, enumerated in ascending byte order of its keys.
class Dictionary {
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

  // The object that this dictionary was made from; a dictionary derived from another has none.
  [[nodiscard]] Origin origin() const;
  // True for two handles on the same storage, and for dictionaries of the same origin; all
  // default-made dictionaries are one object.
  [[nodiscard]] bool isSameObject(const Dictionary& other) const;
  // Compares keys and values.
  friend bool operator==(const Dictionary& left, const Dictionary& right);

 private:
  struct Storage;
  [[nodiscard]] const Value* find(std::string_view key) const;
  std::shared_ptr<const Storage> storage_;
};

// An integer type that stands for a number, which characters and booleans do not.
template <typename T>
concept NumberInteger = std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> &&
                        !std::same_as<T, wchar_t> && !std::same_as<T, char8_t> &&
                        !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

// One property-list value.
class Value {
 public:
  enum class Type : std::uint8_t {
    null,
    boolean,
    integer,
    real,
    string,
    data,
    array,
    dictionary,
    opaque  // an object of the platform that the library does not interpret, such as a date
  };

  Value() = default;  // null
  Value(std::nullptr_t) {}
  Value(bool value) : held_(value) {}
  template <NumberInteger T>
  Value(T value) {
    // An unsigned alternative is used only for what the signed one cannot hold, so that equal
    // numbers are equal values.
    if (std::in_range<std::int64_t>(value)) {
      held_ = static_cast<std::int64_t>(value);
    } else {
      held_ = static_cast<std::uint64_t>(value);
    }
  }
  Value(double value) : held_(value) {}
  Value(const char* value) : held_(std::string(value)) {}  // a null pointer is not allowed
  Value(std::string_view value) : held_(std::string(value)) {}
  Value(std::string value) : held_(std::move(value)) {}  // UTF-8
  Value(Data value) : held_(std::move(value)) {}
  Value(Array value) : held_(std::move(value)) {}
  Value(Dictionary value) : held_(std::move(value)) {}
  Value(const void*) = delete;  // no pointer turns into a boolean
  // A value that says nothing but which object it is.
  [[nodiscard]] static Value opaque(Origin object);

  // The same value, made from `origin`. A container has the origin that it was made with.
  [[nodiscard]] Value withOrigin(Origin origin) &&;
  // The object that this value was made from.
  [[nodiscard]] Origin origin() const;

  [[nodiscard]] Type type() const;
  [[nodiscard]] bool isNull() const { return std::holds_alternative<std::monostate>(held_); }

  // Each gives the value when it is of that type, else empty; no conversions are made.
  [[nodiscard]] std::optional<bool> boolean() const { return get<bool>(); }
  // Empty also for an integer above the signed range, which unsignedInteger() gives.
  [[nodiscard]] std::optional<std::int64_t> integer() const { return get<std::int64_t>(); }
  // Empty also for a negative integer.
  [[nodiscard]] std::optional<std::uint64_t> unsignedInteger() const;
  [[nodiscard]] std::optional<double> real() const { return get<double>(); }
  [[nodiscard]] std::optional<std::string> string() const { return get<std::string>(); }
  [[nodiscard]] std::optional<Data> data() const { return get<Data>(); }
  [[nodiscard]] std::optional<Array> array() const { return get<Array>(); }
  [[nodiscard]] std::optional<Dictionary> dictionary() const { return get<Dictionary>(); }

  // Equal type and equal content, whatever the origins; opaque values are equal to themselves only.
  friend bool operator==(const Value& left, const Value& right) {
    return left.held_ == right.held_;
  }

 private:
  template <typename T>
  [[nodiscard]] std::optional<T> get() const {
    if (const T* held = std::get_if<T>(&held_)) return *held;
    return std::nullopt;
  }

  struct Opaque {
    Origin object;
    friend bool operator==(const Opaque&, const Opaque&) = default;
  };

  std::variant<std::monostate, bool, std::int64_t, std::uint64_t, double, std::string, Data, Array,
               Dictionary, Opaque>
      held_;
  Origin origin_;  // of what is no container
};

struct Dictionary::Entry {
  std::string key;
  Value value;
  friend bool operator==(const Entry&, const Entry&) = default;
};

}  // namespace morvelune
