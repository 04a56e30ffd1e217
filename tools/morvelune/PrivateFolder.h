// PrivateFolder: a temporary folder of the process's own that goes away with all that it holds.
#pragma once

#include <string>

namespace morvelune::tool {

class PrivateFolder {
 public:
  // In $TMPDIR, else /tmp; nobody else may enter it. Throws std::system_error when it cannot be
  // made.
  PrivateFolder();
  // Says so on standard error when it cannot be removed.
  ~PrivateFolder();
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace morvelune::tool
