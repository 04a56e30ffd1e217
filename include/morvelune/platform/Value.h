// Value: one immutable property-list value, and its containers Array, Dictionary and Data.
//
//   Dictionary payload{{"k2tid", "1"}, {"mvl-tk", Dictionary{{"url", "https://t.example"}}}};
//   if (auto tracking = payload.dictionary("mvl-tk")) use(tracking->string("url"));
//
// A container is a handle on shared immutable storage: copying one copies a pointer, and
// isSameObject() tells whether two handles name the same storage or have the same origin. Lookups
// are typed and never throw: a missing key and a value of another type both give an empty optional.
// All of it may be read from any thread. However deeply containers are nested, releasing and
// comparing them takes constant stack.
//
// A platform whose own objects stand for such values hands them in with their Origin, so that what
// passes through the library unchanged comes out as the very object that went in.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

#include "morvelune/platform/Array.h"
#include "morvelune/platform/Data.h"
#include "morvelune/platform/Dictionary.h"
#include "morvelune/platform/Export.h"
#include "morvelune/platform/Origin.h"

namespace morvelune {

// An integer type that stands for a number, which characters and booleans do not.
template <typename T>
concept NumberInteger = std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> &&
                        !std::same_as<T, wchar_t> && !std::same_as<T, char8_t> &&
                        !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

// How many containers deep the library reads: a payload, its buttons, one of them, its parameters.
// A platform may hand in what is nested deeper as opaque values.
inline constexpr int deepestContainerRead = 4;

// One property-list value.
class MORVELUNE_API Value {
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

  Value();  // null
  Value(const Value& other);
  Value(Value&& other) noexcept;
  Value& operator=(const Value& other);
  Value& operator=(Value&& other) noexcept;
  ~Value();
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
  // A value that only stands for `object`.
  [[nodiscard]] static Value opaque(Origin object);

  // The same value with this origin. An array, a dictionary and an opaque value keep their own.
  [[nodiscard]] Value withOrigin(Origin origin) &&;
  // The object that this value was made from; null when there is none.
  [[nodiscard]] Origin origin() const;

  [[nodiscard]] Type type() const;
  [[nodiscard]] bool isNull() const { return std::holds_alternative<std::monostate>(held_); }

  // Each gives the value when it is of that type, else empty; no conversions are made.
  [[nodiscard]] std::optional<bool> boolean() const { return get<bool>(); }
  // Empty also for an integer above the signed range, which unsignedInteger() gives.
  [[nodiscard]] std::optional<std::int64_t> integer() const { return get<std::int64_t>(); }
  // Empty also for a negative integer.
  [[nodiscard]] std::optional<std::uint64_t> unsignedInteger() const;
  // What `visitor` makes of an integer, given as a std::int64_t or, above its range, as a
  // std::uint64_t. Empty for another type.
  template <typename Visitor>
  [[nodiscard]] auto visitInteger(Visitor visitor) const
      -> std::optional<std::invoke_result_t<Visitor, std::int64_t>> {
    if (const auto* held = std::get_if<std::int64_t>(&held_)) return visitor(*held);
    if (const auto* held = std::get_if<std::uint64_t>(&held_)) return visitor(*held);
    return std::nullopt;
  }
  [[nodiscard]] std::optional<double> real() const { return get<double>(); }
  [[nodiscard]] std::optional<std::string> string() const { return get<std::string>(); }
  // The same without a copy, valid while this value lives.
  [[nodiscard]] std::optional<std::string_view> stringView() const {
    const auto* held = std::get_if<std::string>(&held_);
    return held ? std::optional<std::string_view>(*held) : std::nullopt;
  }
  [[nodiscard]] std::optional<Data> data() const { return get<Data>(); }
  [[nodiscard]] std::optional<Array> array() const { return get<Array>(); }
  [[nodiscard]] std::optional<Dictionary> dictionary() const { return get<Dictionary>(); }

  // Arrays and dictionaries that are the same object are equal. Else type and content decide,
  // whatever the origins. Opaque values are equal when they stand for the same object.
  MORVELUNE_API friend bool operator==(const Value& left, const Value& right);

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
  Origin origin_;  // not of an array, a dictionary or an opaque value
};

struct Dictionary::Entry {
  std::string key;
  Value value;
  friend bool operator==(const Entry&, const Entry&) = default;
};

}  // namespace morvelune
