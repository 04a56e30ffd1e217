// PrivateFolder: a temporary folder of the process's own that goes away with all that it holds.
#pragma once

#include <filesystem>

namespace morvelune::tool {

class PrivateFolder {
 public:
  // In $TMPDIR, else /tmp; nobody else may enter it. Throws std::system_error when it cannot be
  // made.
  PrivateFolder();
  ~PrivateFolder();
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace morvelune::tool
