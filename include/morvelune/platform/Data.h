// Data: an immutable byte buffer.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "morvelune/platform/Export.h"

namespace morvelune {

// Its bytes may be a private copy or memory that an owner keeps mapped.
class MORVELUNE_API Data {
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
  // True for the same bytes of the same owner; all default-made buffers are one object.
  [[nodiscard]] bool isSameObject(const Data& other) const {
    return owner_ == other.owner_ && bytes_.data() == other.bytes_.data() &&
           bytes_.size() == other.bytes_.size();
  }
  // Compares the bytes.
  MORVELUNE_API friend bool operator==(const Data& left, const Data& right);

 private:
  std::shared_ptr<const void> owner_;
  std::span<const std::byte> bytes_;
};

}  // namespace morvelune
