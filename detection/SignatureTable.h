// The fixed table of media signatures: which leading bytes tell which type.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "morvelune/platform/Value.h"

namespace morvelune::detection {

// How many leading bytes of a file are examined; a shorter file is not examined at all.
inline constexpr std::size_t headerSize = 16;
using Header = std::span<const std::byte, headerSize>;

// The type of the first signature in table order that the header matches; empty when none does.
[[nodiscard]] std::optional<std::string_view> typeOfHeader(Header header);

// The table as signature records: each type to an array of its records, in table order. Built once.
[[nodiscard]] const Dictionary& signatureMap();

}  // namespace morvelune::detection
