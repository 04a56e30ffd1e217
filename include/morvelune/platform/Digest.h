// Digest: message digests of byte strings.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "morvelune/platform/Export.h"

namespace morvelune {

// Callable from any thread.
class MORVELUNE_API Digest {
 public:
  virtual ~Digest() = default;

  // MD5 (RFC 1321).
  [[nodiscard]] virtual std::array<std::byte, 16> md5(std::string_view bytes) const = 0;
  // SHA-1 (FIPS 180-4).
  [[nodiscard]] virtual std::array<std::byte, 20> sha1(std::string_view bytes) const = 0;
};

}  // namespace morvelune
