#include "tools/morvelune/PrivateFolder.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <system_error>

#include "tools/morvelune/TextTable.h"

namespace morvelune::tool {

PrivateFolder::PrivateFolder() {
  const char* parent = std::getenv("TMPDIR");
  const std::filesystem::path base = parent != nullptr && *parent != '\0' ? parent : "/tmp";
  // Absolute, because attachments are known by file URLs. Nothing that may fail stands between the
  // folder and the member that tells where it is.
  path_ = std::filesystem::absolute(base / "morvelune-XXXXXX");
  if (mkdtemp(path_.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(),
                            "no temporary folder in " + base.string());
  }
}

PrivateFolder::~PrivateFolder() {
  std::error_code error;
  std::filesystem::remove_all(path_, error);
  if (!error) return;
  std::cerr << "morvelune: " << shown(path_) << " cannot be removed: " << error.message() << '\n';
}

}  // namespace morvelune::tool
