// Leading bytes of media files, long enough to be recognised.
#pragma once

#include <string>

namespace morvelune::testing {

[[nodiscard]] std::string pngBytes();
[[nodiscard]] std::string jpegBytes();
[[nodiscard]] std::string gifBytes();
[[nodiscard]] std::string mp4Bytes();
// Sixteen bytes that no signature matches.
[[nodiscard]] std::string unknownBytes();

}  // namespace morvelune::testing
