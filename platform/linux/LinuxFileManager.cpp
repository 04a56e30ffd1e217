#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <random>
#include <system_error>

#include "platform/FilePath.h"
#include "platform/linux/LinuxServices.h"

namespace morvelune {
namespace {

class OpenFile {
 public:
  // Not blocking, because opening a pipe would otherwise wait for its writer.
  explicit OpenFile(const std::string& path)
      : descriptor_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
  ~OpenFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  // The whole file; the mapping stays when the descriptor is closed.
  [[nodiscard]] std::optional<Data> map() const {
    struct stat status = {};
    if (::fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    const auto size = static_cast<std::size_t>(status.st_size);
    if (size == 0) return Data();  // which mmap() refuses to map
    void* bytes = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor_, 0);
    if (bytes == MAP_FAILED) return std::nullopt;
    std::shared_ptr<const void> owner(bytes, [size](void* mapped) { ::munmap(mapped, size); });
    return Data(std::move(owner), {static_cast<const std::byte*>(bytes), size});
  }

 private:
  const int descriptor_;
};

// Renames where no file stands yet; gives 0 or the system's error number.
int renameExclusively(const std::string& from, const std::string& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;
  // This file system cannot rename exclusively. link() never replaces a file either.
  if (::link(from.c_str(), to.c_str()) != 0) return errno;
  if (::unlink(from.c_str()) == 0) return 0;
  const int error = errno;
  ::unlink(to.c_str());
  return error;
}

std::string quoted(std::string_view name) {
  return "“" + std::string(name) + "”";
}

std::string lastComponent(const std::string& path) {
  return quoted(path.substr(path.find_last_of('/') + 1));
}

// The name of the folder that holds the file.
std::string folderName(const std::string& path) {
  const std::size_t end = path.find_last_of('/');
  if (end == std::string::npos || end == 0) return quoted("/");
  return lastComponent(path.substr(0, end));
}

Error moveError(int error, const std::string& from, const std::string& to) {
  const std::string what = lastComponent(from) + " couldn’t be moved to " + folderName(to);
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return {NSCocoaErrorDomain, NSFileNoSuchFileError,
              what +
                  " because either the former doesn’t exist, or the folder containing the "
                  "latter doesn’t exist."};
    case EEXIST:
      return {NSCocoaErrorDomain, NSFileWriteFileExistsError,
              what + " because an item with the same name already exists."};
    case ENAMETOOLONG:
      return {NSCocoaErrorDomain, NSFileWriteInvalidFileNameError,
              what + " because the file name is invalid."};
    default:
      return {NSCocoaErrorDomain, NSFileWriteUnknownError,
              what + " (" + std::generic_category().message(error) + ")."};
  }
}

// A random UUID (RFC 4122, version 4), in upper case.
std::string randomUUID() {
  std::random_device random;
  const std::array<std::uint32_t, 4> words{random(), random(), random(), random()};
  std::array<char, 37> text{};
  std::snprintf(text.data(), text.size(), "%08X-%04X-4%03X-%04X-%04X%08X", words[0],
                words[1] >> 16U, words[1] & 0x0FFFU, (words[2] >> 16U & 0x3FFFU) | 0x8000U,
                words[2] & 0xFFFFU, words[3]);
  return text.data();
}

class LinuxFileManager : public FileManager {
 public:
  [[nodiscard]] std::optional<Data> contents(const URL& file) const override {
    const std::optional<std::string> path = filePath(file);
    return path ? OpenFile(*path).map() : std::nullopt;
  }

  [[nodiscard]] std::optional<Error> moveItem(const URL& from, const URL& to) override {
    const std::optional<std::string> source = filePath(from);
    const std::optional<std::string> destination = filePath(to);
    if (!source || !destination) {
      const URL& invalid = source ? to : from;
      return Error{NSCocoaErrorDomain, NSFileWriteInvalidFileNameError,
                   "The file name " + lastComponent(invalid.path()) + " is invalid."};
    }
    const int error = renameExclusively(*source, *destination);
    return error == 0 ? std::nullopt : std::optional(moveError(error, *source, *destination));
  }

  // The UUID tells hosts and processes apart, the counter the strings of one process.
  [[nodiscard]] std::string globallyUniqueString() override {
    static std::atomic<std::uint64_t> counter = 0;
    std::array<char, 17> count{};
    std::snprintf(count.data(), count.size(), "%016llX",
                  static_cast<unsigned long long>(++counter));
    return randomUUID() + "-" + std::to_string(::getpid()) + "-" + count.data();
  }
};

}  // namespace

std::shared_ptr<FileManager> makeLinuxFileManager() {
  return std::make_shared<LinuxFileManager>();
}

}  // namespace morvelune
