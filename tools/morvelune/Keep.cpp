#include "tools/morvelune/Keep.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <system_error>
#include <utility>

#include "detection/MediaTypes.h"

namespace morvelune::tool {
namespace {

namespace fs = std::filesystem;

// With its dot; empty when no extension is known.
std::string usualExtension(const std::optional<std::string>& type) {
  for (const detection::MediaType& each : detection::mediaTypes()) {
    if (each.identifier == type) return '.' + std::string(each.extensions.front());
  }
  return "";
}

// An identifier comes from the payload and may hold anything.
std::string safe(std::string identifier) {
  constexpr std::size_t longest = 100;  // with all that is added, below the 255 of file systems
  constexpr std::string_view allowed =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-";
  if (identifier.size() > longest) identifier.resize(longest);
  for (char& c : identifier) {
    if (allowed.find(c) == std::string_view::npos) c = '_';
  }
  return identifier.empty() ? "attachment" : identifier;
}

[[noreturn]] void fail(const char* what, const fs::path& path) {
  throw fs::filesystem_error(what, path, {errno, std::generic_category()});
}

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  [[nodiscard]] int number() const { return number_; }
  // False when what was written did not arrive.
  [[nodiscard]] bool close() { return ::close(std::exchange(number_, -1)) == 0; }

 private:
  int number_;
};

// A file that was made here, under a name that was free. It is removed again unless it is finished.
class MadeFile {
 public:
  MadeFile(const fs::path& name, int descriptor) : name_(name), descriptor_(descriptor) {
    if (descriptor >= 0 && fstat(descriptor, &made_) != 0) fail("cannot read", name);
  }
  ~MadeFile() {
    if (!isFinished_ && isStillThere()) unlink(name_.c_str());
  }
  MadeFile(const MadeFile&) = delete;
  MadeFile& operator=(const MadeFile&) = delete;

  void write(std::string_view bytes) const {
    while (!bytes.empty()) {
      const ssize_t written = ::write(descriptor_.number(), bytes.data(), bytes.size());
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) fail("cannot write", name_);
      bytes.remove_prefix(static_cast<std::size_t>(written));
    }
  }

  // Somebody may have put another file in its place meanwhile.
  void finish() {
    if (!descriptor_.close()) fail("cannot write", name_);
    errno = EEXIST;
    if (!isStillThere()) fail("replaced", name_);
    isFinished_ = true;
  }

 private:
  [[nodiscard]] bool isStillThere() const {
    struct stat now {};
    return lstat(name_.c_str(), &now) == 0 && now.st_dev == made_.st_dev &&
           now.st_ino == made_.st_ino;
  }

  const fs::path name_;
  Descriptor descriptor_;
  struct stat made_ {};
  bool isFinished_ = false;
};

enum class Placed : std::uint8_t { done, taken, enough };

Placed copy(const fs::path& file, const fs::path& name, const std::function<bool()>& isEnough) {
  // Made here or not at all, and written through this descriptor, so that nobody else's file is.
  const int descriptor = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (descriptor < 0 && errno == EEXIST) return Placed::taken;
  if (descriptor < 0) fail("cannot make", name);
  MadeFile made(name, descriptor);
  const Descriptor source(open(file.c_str(), O_RDONLY | O_CLOEXEC));
  if (source.number() < 0) fail("cannot read", file);
  std::string buffer(1 << 16, '\0');
  while (!isEnough()) {
    const ssize_t size = read(source.number(), buffer.data(), buffer.size());
    if (size < 0 && errno == EINTR) continue;
    if (size < 0) fail("cannot read", file);
    if (size == 0) {
      made.finish();
      return Placed::done;
    }
    made.write({buffer.data(), static_cast<std::size_t>(size)});
  }
  return Placed::enough;
}

// A link costs nothing and never replaces a file; across file systems, or where there are no links,
// a copy.
Placed place(const fs::path& file, const fs::path& name, const std::function<bool()>& isEnough) {
  if (link(file.c_str(), name.c_str()) == 0) return Placed::done;
  if (errno == EEXIST) return Placed::taken;
  return copy(file, name, isEnough);
}

}  // namespace

void prepareKeepFolder(const fs::path& folder) {
  std::error_code error;
  if (!fs::is_directory(folder, error)) fs::create_directories(folder);
  if (access(folder.c_str(), W_OK | X_OK) != 0) {
    fail("cannot write", folder);
  }
}

bool keepAttachments(const UNNotificationContent::Attachments& attachments, const fs::path& folder,
                     std::map<std::string, std::string>& kept,
                     const std::function<bool()>& isEnough) {
  for (std::size_t i = 0; i < attachments.size(); ++i) {
    const std::string path = attachments[i]->url().path();
    if (kept.contains(path)) continue;
    const std::string stem = std::to_string(i + 1) + '-' + safe(attachments[i]->identifier());
    const std::string extension = usualExtension(attachments[i]->type());
    fs::path name = folder / (stem + extension);
    Placed placed = place(path, name, isEnough);
    for (int n = 2; placed == Placed::taken; ++n) {
      name = folder / (stem + '-' + std::to_string(n) + extension);
      placed = place(path, name, isEnough);
    }
    if (placed == Placed::enough) return false;
    kept.emplace(path, name);
  }
  return true;
}

}  // namespace morvelune::tool
