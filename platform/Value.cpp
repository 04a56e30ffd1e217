#include "morvelune/platform/Value.h"

#include <algorithm>

namespace morvelune {
namespace {

// Releases values with constant stack: while one release runs on a thread, containers that die on
// it hand their children over instead of releasing them from within.
void release(std::vector<Value> values) {
  thread_local std::vector<Value>* running = nullptr;
  if (running != nullptr) {
    std::move(values.begin(), values.end(), std::back_inserter(*running));
    return;
  }
  running = &values;
  while (!values.empty()) {
    const Value last = std::move(values.back());
    values.pop_back();
  }
  running = nullptr;
}

// The pairs of values that are still to be compared. As a list, not as calls within calls, so that
// no depth of nesting can exhaust the stack.
using Pairs = std::vector<std::pair<const Value*, const Value*>>;

// Sorted by key; of entries with equal keys the last one stays. Not by std::stable_sort:
// libstdc++'s uses a deprecated function, of which newer compilers warn.
std::vector<Dictionary::Entry> normalised(std::vector<Dictionary::Entry> entries) {
  std::vector<Dictionary::Entry*> order;
  order.reserve(entries.size());
  for (auto& entry : entries) order.push_back(&entry);
  std::sort(order.begin(), order.end(), [](const auto* left, const auto* right) {
    const int keys = left->key.compare(right->key);
    return keys != 0 ? keys < 0 : left < right;
  });
  std::vector<Dictionary::Entry> sorted;
  sorted.reserve(entries.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    const bool isLast = i + 1 == order.size() || order[i]->key != order[i + 1]->key;
    if (isLast) sorted.push_back(std::move(*order[i]));
  }
  return sorted;
}

// Adds the pairs of values of two containers, none when they are the same object; false when their
// sizes or keys differ.
bool pairUp(const Array& left, const Array& right, Pairs& pairs) {
  if (left.isSameObject(right)) return true;
  if (left.size() != right.size()) return false;
  for (std::size_t i = 0; i < left.size(); ++i) {
    pairs.emplace_back(left.begin() + i, right.begin() + i);
  }
  return true;
}

bool pairUp(const Dictionary& left, const Dictionary& right, Pairs& pairs) {
  if (left.isSameObject(right)) return true;
  if (left.size() != right.size()) return false;
  for (std::size_t i = 0; i < left.size(); ++i) {
    const auto& [leftKey, leftValue] = left.begin()[i];
    const auto& [rightKey, rightValue] = right.begin()[i];
    if (leftKey != rightKey) return false;
    pairs.emplace_back(&leftValue, &rightValue);
  }
  return true;
}

}  // namespace

struct Array::Storage {
  Storage(std::vector<Value> all, Origin from) : values(std::move(all)), origin(std::move(from)) {}
  Storage(const Storage&) = delete;
  Storage& operator=(const Storage&) = delete;
  ~Storage() { release(std::move(values)); }

  std::vector<Value> values;
  Origin origin;
};

struct Dictionary::Storage {
  Storage(std::vector<Entry> all, Origin from)
      : entries(normalised(std::move(all))), origin(std::move(from)) {}
  Storage(const Storage&) = delete;
  Storage& operator=(const Storage&) = delete;
  ~Storage() {
    std::vector<Value> values;
    values.reserve(entries.size());
    for (Entry& entry : entries) values.push_back(std::move(entry.value));
    release(std::move(values));
  }

  std::vector<Entry> entries;
  Origin origin;
};

Data::Data(std::vector<std::byte> bytes) {
  auto owned = std::make_shared<const std::vector<std::byte>>(std::move(bytes));
  bytes_ = *owned;
  owner_ = std::move(owned);
}

Data::Data(std::shared_ptr<const void> owner, std::span<const std::byte> bytes)
    : owner_(std::move(owner)), bytes_(bytes) {}

Data Data::copyOf(std::string_view bytes) {
  const auto* first = reinterpret_cast<const std::byte*>(bytes.data());
  return Data(std::vector<std::byte>(first, first + bytes.size()));
}

bool operator==(const Data& left, const Data& right) {
  return std::equal(left.bytes_.begin(), left.bytes_.end(), right.bytes_.begin(),
                    right.bytes_.end());
}

Array::Array(std::initializer_list<Value> values) : Array(std::vector<Value>(values)) {}

Array::Array(std::vector<Value> values, Origin origin)
    : storage_(std::make_shared<const Storage>(std::move(values), std::move(origin))) {}

std::size_t Array::size() const {
  return storage_ ? storage_->values.size() : 0;
}

Value Array::value(std::size_t index) const {
  return index < size() ? storage_->values[index] : Value();
}

std::optional<Dictionary> Array::dictionary(std::size_t index) const {
  return value(index).dictionary();
}

const Value* Array::begin() const {
  return storage_ ? storage_->values.data() : nullptr;
}
const Value* Array::end() const {
  return begin() + size();
}

Origin Array::origin() const {
  return storage_ ? storage_->origin : nullptr;
}

bool Array::isSameObject(const Array& other) const {
  return storage_ == other.storage_ || (origin() && origin() == other.origin());
}

bool operator==(const Array& left, const Array& right) {
  return Value(left) == Value(right);
}

Dictionary::Dictionary(std::initializer_list<Entry> entries)
    : Dictionary(std::vector<Entry>(entries)) {}

Dictionary::Dictionary(std::vector<Entry> entries, Origin origin)
    : storage_(std::make_shared<const Storage>(std::move(entries), std::move(origin))) {}

std::size_t Dictionary::size() const {
  return storage_ ? storage_->entries.size() : 0;
}

const Value* Dictionary::find(std::string_view key) const {
  const auto* found = std::lower_bound(
      begin(), end(), key, [](const Entry& entry, std::string_view k) { return entry.key < k; });
  return found != end() && found->key == key ? &found->value : nullptr;
}

bool Dictionary::contains(std::string_view key) const {
  return find(key) != nullptr;
}

std::optional<Value> Dictionary::value(std::string_view key) const {
  const Value* found = find(key);
  return found ? std::optional(*found) : std::nullopt;
}

std::optional<bool> Dictionary::boolean(std::string_view key) const {
  const Value* found = find(key);
  return found ? found->boolean() : std::nullopt;
}

std::optional<std::int64_t> Dictionary::integer(std::string_view key) const {
  const Value* found = find(key);
  return found ? found->integer() : std::nullopt;
}

std::optional<double> Dictionary::real(std::string_view key) const {
  const Value* found = find(key);
  return found ? found->real() : std::nullopt;
}

std::optional<std::string> Dictionary::string(std::string_view key) const {
  const Value* found = find(key);
  return found ? found->string() : std::nullopt;
}

std::optional<std::string_view> Dictionary::stringView(std::string_view key) const {
  const Value* found = find(key);
  return found ? found->stringView() : std::nullopt;
}

std::optional<Data> Dictionary::data(std::string_view key) const {
  const Value* found = find(key);
  return found ? found->data() : std::nullopt;
}

std::optional<Array> Dictionary::array(std::string_view key) const {
  const Value* found = find(key);
  return found ? found->array() : std::nullopt;
}

std::optional<Dictionary> Dictionary::dictionary(std::string_view key) const {
  const Value* found = find(key);
  return found ? found->dictionary() : std::nullopt;
}

Dictionary Dictionary::with(std::string_view key, Value value) const {
  std::vector<Entry> entries(begin(), end());
  entries.push_back({std::string(key), std::move(value)});
  return Dictionary(std::move(entries));
}

Dictionary Dictionary::with(const Dictionary& other) const {
  std::vector<Entry> entries(begin(), end());
  entries.insert(entries.end(), other.begin(), other.end());
  return Dictionary(std::move(entries));
}

Dictionary Dictionary::without(std::span<const std::string_view> keys) const {
  std::vector<Entry> entries;
  std::copy_if(begin(), end(), std::back_inserter(entries), [keys](const Entry& entry) {
    return std::find(keys.begin(), keys.end(), entry.key) == keys.end();
  });
  return Dictionary(std::move(entries));
}

const Dictionary::Entry* Dictionary::begin() const {
  return storage_ ? storage_->entries.data() : nullptr;
}
const Dictionary::Entry* Dictionary::end() const {
  return begin() + size();
}

Origin Dictionary::origin() const {
  return storage_ ? storage_->origin : nullptr;
}

bool Dictionary::isSameObject(const Dictionary& other) const {
  return storage_ == other.storage_ || (origin() && origin() == other.origin());
}

bool operator==(const Dictionary& left, const Dictionary& right) {
  return Value(left) == Value(right);
}

bool operator==(const Value& left, const Value& right) {
  Pairs waiting{{&left, &right}};
  while (!waiting.empty()) {
    const auto [one, other] = waiting.back();
    waiting.pop_back();
    if (const auto* array = std::get_if<Array>(&one->held_)) {
      const auto* second = std::get_if<Array>(&other->held_);
      if (second == nullptr || !pairUp(*array, *second, waiting)) return false;
    } else if (const auto* dictionary = std::get_if<Dictionary>(&one->held_)) {
      const auto* second = std::get_if<Dictionary>(&other->held_);
      if (second == nullptr || !pairUp(*dictionary, *second, waiting)) return false;
    } else if (one->held_ != other->held_) {
      return false;
    }
  }
  return true;
}

Value::Value() = default;
Value::Value(const Value& other) = default;
Value::Value(Value&& other) noexcept = default;
Value& Value::operator=(const Value& other) = default;
Value& Value::operator=(Value&& other) noexcept = default;
Value::~Value() = default;

Value::Type Value::type() const {
  // In the order of the variant's alternatives: both integer ones are one type.
  constexpr Type types[] = {Type::null,       Type::boolean, Type::integer, Type::integer,
                            Type::real,       Type::string,  Type::data,    Type::array,
                            Type::dictionary, Type::opaque};
  return types[held_.index()];
}

Value Value::opaque(Origin object) {
  Value value;
  value.held_ = Opaque{std::move(object)};
  return value;
}

Value Value::withOrigin(Origin origin) && {
  origin_ = std::move(origin);
  return std::move(*this);
}

Origin Value::origin() const {
  if (const auto* held = std::get_if<Array>(&held_)) return held->origin();
  if (const auto* held = std::get_if<Dictionary>(&held_)) return held->origin();
  if (const auto* held = std::get_if<Opaque>(&held_)) return held->object;
  return origin_;
}

std::optional<std::uint64_t> Value::unsignedInteger() const {
  if (const auto* held = std::get_if<std::int64_t>(&held_)) {
    return *held >= 0 ? std::optional(static_cast<std::uint64_t>(*held)) : std::nullopt;
  }
  return get<std::uint64_t>();
}

}  // namespace morvelune
