// TemporaryFile: a private file that is being downloaded.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <memory>
#include <span>
#include <string>

namespace morvelune {

// Deletes the file when it goes, unless somebody moved it away. In a forked child it does not: the
// file is the parent's.
class TemporaryFile {
 public:
  // A new empty file in an existing folder, for its owner's eyes only; null when it cannot be made.
  static std::unique_ptr<TemporaryFile> create(const std::string& folder);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  // Appends all of the bytes; false when the system refuses.
  [[nodiscard]] bool write(std::span<const std::byte> bytes);
  // Ends the writing; false when the system only now tells that it did not keep all bytes.
  [[nodiscard]] bool close();
  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  TemporaryFile(std::string path, int descriptor);

  std::string path_;
  int descriptor_;  // -1 once closed
  const pid_t owner_ = getpid();
};

}  // namespace morvelune
