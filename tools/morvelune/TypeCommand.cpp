#include "tools/morvelune/TypeCommand.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "detection/MediaTypes.h"
#include "morvelune/platform/Path.h"
#include "tools/morvelune/ExitStatus.h"
#include "tools/morvelune/Json.h"
#include "tools/morvelune/TextTable.h"

namespace morvelune::tool {
namespace {

using nlohmann::ordered_json;

struct TypeOptions {
  std::vector<std::string> files;
  bool json = false;
};

struct TypedFile {
  std::string path;
  std::optional<std::string> type;
  std::optional<std::string> by;  // what decided, when there is a type
};

class Descriptor {
 public:
  // Without waiting: opening a pipe would wait for its writer.
  explicit Descriptor(const std::string& path)
      : number_(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY)) {}
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  [[nodiscard]] int number() const { return number_; }

 private:
  int number_;
};

// The first bytes of a regular file, fewer when it has fewer. Throws when it cannot be read.
Data header(const std::string& path) {
  const Descriptor file(path);
  struct stat status {};
  if (file.number() < 0 || fstat(file.number(), &status) != 0) {
    throw std::system_error(errno, std::generic_category());
  }
  if (!S_ISREG(status.st_mode)) throw std::runtime_error("not a regular file");
  std::vector<std::byte> bytes(detection::headerSize);
  const ssize_t size = read(file.number(), bytes.data(), bytes.size());
  if (size < 0) throw std::system_error(errno, std::generic_category());
  bytes.resize(static_cast<std::size_t>(size));
  return Data(std::move(bytes));
}

TypedFile typed(const std::string& path) {
  if (auto type = detection::typeOfContent(header(path))) return {path, type, "content"};
  if (auto type = detection::typeOfExtension(pathExtension(path))) return {path, type, "extension"};
  return {path, std::nullopt, std::nullopt};
}

std::string textReport(const std::vector<TypedFile>& files) {
  Rows rows;
  for (const TypedFile& file : files) {
    rows.push_back({shown(file.path), file.type.value_or("unknown"), file.by.value_or("")});
  }
  return aligned(rows);
}

std::string jsonReport(const std::vector<TypedFile>& files) {
  ordered_json list = ordered_json::array();
  for (const TypedFile& file : files) {
    list.push_back({{"path", file.path}, {"type", orNull(file.type)}, {"by", orNull(file.by)}});
  }
  return dump(list, 2) + '\n';
}

// Looks at the files, reports on standard output, and gives the exit status.
int run(const TypeOptions& options) {
  std::vector<TypedFile> files;
  int status = exitSuccess;
  for (const std::string& path : options.files) {
    try {
      files.push_back(typed(path));
    } catch (const std::runtime_error& error) {
      std::cerr << "morvelune: " << shown(path) << ": " << shown(error.what()) << '\n';
      status = exitFailed;
    }
  }
  std::cout << (options.json ? jsonReport(files) : textReport(files));
  return status;
}

}  // namespace

void addTypeCommand(CLI::App& app, int& status) {
  const auto options = std::make_shared<TypeOptions>();
  CLI::App* type = app.add_subcommand("type", "Tell the media types of files");
  type->add_option("FILE", options->files, "Regular files, of which the first 16 bytes are read")
      ->required()
      ->type_name("");
  type->add_flag("--json", options->json, "Report as one JSON array");
  type->footer("Exit status: 0 all files read, 1 some not, 2 wrong usage.");
  type->callback([options, &status] { status = run(*options); });
}

}  // namespace morvelune::tool
