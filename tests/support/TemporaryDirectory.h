// A folder of its own that is removed with all that it holds when it goes out of scope.
#pragma once

#include <string>
#include <vector>

namespace morvelune::testing {

class TemporaryDirectory {
 public:
  TemporaryDirectory();
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }
  // Writes a file into it and gives the file's path.
  std::string write(const std::string& name, const std::string& bytes) const;
  // The names of all that it holds, at any depth, in order.
  [[nodiscard]] std::vector<std::string> names() const;

 private:
  std::string path_;
};

// All bytes of a file; none if there is no such file.
[[nodiscard]] std::string contentsOf(const std::string& path);

}  // namespace morvelune::testing
