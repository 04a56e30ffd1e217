// The media types that the library knows: one table of what their files begin with and how they are
// named, and what it tells.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "morvelune/platform/Value.h"

namespace morvelune::detection {

// Bytes that a file of a type has at an offset.
struct Signature {
  std::string_view bytes;  // compared as they stand
  std::size_t offset = 0;  // in the file
};

struct MediaType {
  std::string_view identifier;          // Uniform Type Identifier
  std::array<Signature, 5> signatures;  // empty ones where there are fewer
  // File-name extensions that tell the type, in lower case and without a dot; the usual one first,
  // "" where there are fewer.
  std::array<std::string_view, 4> extensions;
};

// The whole table.
[[nodiscard]] std::span<const MediaType> mediaTypes();

// How many leading bytes of a file are examined; a shorter file is not examined at all.
inline constexpr std::size_t headerSize = 16;

// The type of the first row that has one of the file's signatures; empty when none has, when the
// data is too short, and without data.
[[nodiscard]] std::optional<std::string> typeOfContent(const std::optional<Data>& data);

// The type of a file-name extension without its dot, in lower case only; empty for an unknown one.
[[nodiscard]] std::optional<std::string> typeOfExtension(std::string_view extension);

// The table as signature records: each type to an array of its records, in order. Built once.
[[nodiscard]] const Dictionary& signatureMap();

// The table as extensions to types. Built once.
[[nodiscard]] const Dictionary& extensionMap();

}  // namespace morvelune::detection
