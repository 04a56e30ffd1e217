#include "platform/linux/TemporaryFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "morvelune/platform/Path.h"

namespace morvelune {
namespace {

// iOS's name for a file that is being downloaded.
constexpr char nameTemplate[] = "CFNetworkDownload_XXXXXX.tmp";
constexpr std::string_view suffix = ".tmp";

}  // namespace

std::unique_ptr<TemporaryFile> TemporaryFile::create(const std::string& folder) {
  std::string path = stringByAppendingPathComponent(folder, nameTemplate);
  const int descriptor = mkostemps(path.data(), static_cast<int>(suffix.size()), O_CLOEXEC);
  if (descriptor < 0) return nullptr;
  return std::unique_ptr<TemporaryFile>(new TemporaryFile(std::move(path), descriptor));
}

TemporaryFile::TemporaryFile(std::string path, int descriptor)
    : path_(std::move(path)), descriptor_(descriptor) {}

TemporaryFile::~TemporaryFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
  if (getpid() == owner_) unlink(path_.c_str());
}

bool TemporaryFile::write(std::span<const std::byte> bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
  return true;
}

bool TemporaryFile::close() {
  return ::close(std::exchange(descriptor_, -1)) == 0;
}

}  // namespace morvelune
