// FSign: builds a signature record, one of those that tell a media type by a file's leading bytes.
#pragma once

#include <cstddef>

#include "morvelune/platform/Export.h"
#include "morvelune/platform/Value.h"

namespace morvelune {

// The keys of a signature record.
inline constexpr char MVLUTIMapObjectDataKey[] = "data";      // Data: the bytes that must be there
inline constexpr char MVLUTIMapObjectLengthKey[] = "length";  // integer: how many are compared
inline constexpr char MVLUTIMapObjectOffsetKey[] = "offset";  // integer: where in the file, from 0

// A record of a private copy of the `length` bytes at `bytes`, of `length` and of `offset`. Nothing
// is validated; a length of 0 gives an empty buffer, and `bytes` may then be null.
[[nodiscard]] MORVELUNE_API Dictionary FSign(const void* bytes, std::size_t length,
                                             std::size_t offset);

}  // namespace morvelune
