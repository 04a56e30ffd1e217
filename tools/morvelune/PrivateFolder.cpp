#include "tools/morvelune/PrivateFolder.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

namespace morvelune::tool {

PrivateFolder::PrivateFolder() {
  const char* parent = std::getenv("TMPDIR");
  const std::filesystem::path base = parent != nullptr && *parent != '\0' ? parent : "/tmp";
  // Absolute, because attachments are known by file URLs.
  std::string path = std::filesystem::absolute(base / "morvelune-XXXXXX");
  if (mkdtemp(path.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(),
                            "no temporary folder in " + base.string());
  }
  path_ = path;
}

PrivateFolder::~PrivateFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace morvelune::tool
