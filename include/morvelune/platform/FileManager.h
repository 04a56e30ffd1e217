// FileManager: the few file operations that staging an attachment needs.
#pragma once

#include <optional>
#include <string>

#include "morvelune/platform/Error.h"
#include "morvelune/platform/Export.h"
#include "morvelune/platform/URL.h"
#include "morvelune/platform/Value.h"

namespace morvelune {

// Callable from any thread.
class MORVELUNE_API FileManager {
 public:
  virtual ~FileManager() = default;

  // The bytes of a regular file, mapped rather than copied where the system allows it; an empty
  // buffer for an empty file; nothing when it cannot be read. The buffer outlives the file's name.
  [[nodiscard]] virtual std::optional<Data> contents(const URL& file) const = 0;

  // Renames a file; nothing is copied. An existing destination is left alone and is an error, as
  // is a missing source, a destination folder that does not exist, or a path that no file can
  // have, such as the empty one. Gives the platform's error, or nothing. Only the error counts, not
  // a result flag of the platform.
  [[nodiscard]] virtual std::optional<Error> moveItem(const URL& from, const URL& to) = 0;

  // A string that no process on any host has been given before.
  [[nodiscard]] virtual std::string globallyUniqueString() = 0;
};

}  // namespace morvelune
