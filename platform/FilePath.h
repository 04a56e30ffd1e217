// The path of a file, as the system's calls take it.
#pragma once

#include <optional>
#include <string>

#include "morvelune/platform/URL.h"

namespace morvelune {

// Empty for what is no file URL, for an empty path, and for one with a zero byte, at which a call
// would cut it.
inline std::optional<std::string> filePath(const URL& file) {
  if (!file.isFileURL()) return std::nullopt;
  std::string path = file.path();
  if (path.empty() || path.find('\0') != std::string::npos) return std::nullopt;
  return path;
}

}  // namespace morvelune
