#include "support/TemporaryDirectory.h"

#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace morvelune::testing {

namespace fs = std::filesystem;

TemporaryDirectory::TemporaryDirectory()
    : path_((fs::temp_directory_path() / "morvelune-test-XXXXXX").string()) {
  if (::mkdtemp(path_.data()) == nullptr) throw std::runtime_error(path_);
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

std::string TemporaryDirectory::write(const std::string& name, const std::string& bytes) const {
  std::string path = path_ + "/" + name;
  std::ofstream file(path, std::ios::binary);
  file.exceptions(std::ios::failbit | std::ios::badbit);
  file << bytes << std::flush;
  return path;
}

std::vector<std::string> TemporaryDirectory::names() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::recursive_directory_iterator(path_)) {
    names.push_back(fs::relative(entry.path(), path_).string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string contentsOf(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

}  // namespace morvelune::testing
