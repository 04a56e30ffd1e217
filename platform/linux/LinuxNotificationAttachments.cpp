#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "morvelune/platform/Path.h"
#include "platform/linux/FilePath.h"
#include "platform/linux/LinuxServices.h"

namespace morvelune {
namespace {

// The platform's documented limits, in bytes.
constexpr std::int64_t megabyte = 1 << 20;
constexpr std::int64_t audioLimit = 5 * megabyte;
constexpr std::int64_t imageLimit = 10 * megabyte;
constexpr std::int64_t movieLimit = 50 * megabyte;

struct MediaType {
  std::string_view identifier;
  std::int64_t sizeLimit;
  std::array<std::string_view, 5> extensions;  // in lower case, "" where there are fewer
};

constexpr MediaType mediaTypes[] = {
    {"public.aiff-audio", audioLimit, {"aif", "aiff"}},
    {"com.microsoft.waveform-audio", audioLimit, {"wav", "wave"}},
    {"public.mp3", audioLimit, {"mp3"}},
    {"public.mpeg-4-audio", audioLimit, {"m4a"}},
    {"public.jpeg", imageLimit, {"jpg", "jpeg", "jpe"}},
    {"com.compuserve.gif", imageLimit, {"gif"}},
    {"public.png", imageLimit, {"png"}},
    {"public.mpeg", movieLimit, {"mpg", "mpeg", "mpe", "m75", "m15"}},
    {"public.mpeg-2-video", movieLimit, {"m2v"}},
    {"public.mpeg-4", movieLimit, {"mp4", "mpg4"}},
    {"public.avi", movieLimit, {"avi", "vfw"}},
};

const MediaType* typeOfIdentifier(std::string_view identifier) {
  const auto* found =
      std::find_if(std::begin(mediaTypes), std::end(mediaTypes),
                   [identifier](const MediaType& type) { return type.identifier == identifier; });
  return found != std::end(mediaTypes) ? found : nullptr;
}

const MediaType* typeOfPath(const std::string& path) {
  std::string extension = pathExtension(path);
  if (extension.empty()) return nullptr;
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; });
  const auto* found =
      std::find_if(std::begin(mediaTypes), std::end(mediaTypes), [&extension](const auto& type) {
        return std::find(type.extensions.begin(), type.extensions.end(), extension) !=
               type.extensions.end();
      });
  return found != std::end(mediaTypes) ? found : nullptr;
}

std::optional<std::int64_t> sizeOfRegularFile(const std::string& path) {
  struct stat status = {};
  if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return status.st_size;
}

class LinuxNotificationAttachments : public NotificationAttachments {
 public:
  [[nodiscard]] Result attachment(const std::string& identifier, const URL& file,
                                  const std::optional<std::string>& typeHint) const override {
    const std::optional<std::string> path = filePath(file);
    const std::optional<std::int64_t> size = path ? sizeOfRegularFile(*path) : std::nullopt;
    if (!size) {
      return Error{UNErrorDomain, UNErrorCodeAttachmentInvalidURL, "Invalid attachment file URL"};
    }
    const MediaType* type = typeHint ? typeOfIdentifier(*typeHint) : typeOfPath(*path);
    if (type == nullptr) {
      return Error{UNErrorDomain, UNErrorCodeAttachmentUnrecognizedType,
                   "Unrecognized attachment file type"};
    }
    if (*size > type->sizeLimit) {
      return Error{UNErrorDomain, UNErrorCodeAttachmentInvalidFileSize,
                   "Invalid attachment file size"};
    }
    return std::make_shared<const UNNotificationAttachment>(identifier, file,
                                                            std::string(type->identifier));
  }
};

}  // namespace

std::shared_ptr<NotificationAttachments> makeLinuxNotificationAttachments() {
  return std::make_shared<LinuxNotificationAttachments>();
}

}  // namespace morvelune
