#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "morvelune/platform/ASCII.h"
#include "morvelune/platform/Path.h"
#include "platform/FilePath.h"
#include "platform/linux/AcceptedMedia.h"
#include "platform/linux/LinuxServices.h"

namespace morvelune {
namespace {

template <typename Predicate>
const AcceptedMedia* find(Predicate isWanted) {
  const auto* const found =
      std::find_if(std::begin(acceptedMedia), std::end(acceptedMedia), isWanted);
  return found != std::end(acceptedMedia) ? found : nullptr;
}

const AcceptedMedia* mediaOfIdentifier(std::string_view identifier) {
  return find([identifier](const AcceptedMedia& each) { return each.identifier == identifier; });
}

const AcceptedMedia* mediaOfPath(const std::string& path) {
  const std::string extension = asciiLowercased(pathExtension(path));
  if (extension.empty()) return nullptr;
  return find([&extension](const AcceptedMedia& each) {
    return std::find(each.extensions.begin(), each.extensions.end(), extension) !=
           each.extensions.end();
  });
}

std::optional<std::int64_t> sizeOfRegularFile(const std::string& path) {
  struct stat status = {};
  if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return status.st_size;
}

class LinuxNotificationAttachments : public NotificationAttachments {
 public:
  [[nodiscard]] Result attachment(const std::string& identifier, const URL& file,
                                  std::optional<std::string_view> typeHint) const override {
    const std::optional<std::string> path = filePath(file);
    const std::optional<std::int64_t> size = path ? sizeOfRegularFile(*path) : std::nullopt;
    if (!size) {
      return Error{UNErrorDomain, UNErrorCodeAttachmentInvalidURL, "Invalid attachment file URL"};
    }
    const AcceptedMedia* media = typeHint ? mediaOfIdentifier(*typeHint) : mediaOfPath(*path);
    if (media == nullptr) {
      return Error{UNErrorDomain, UNErrorCodeAttachmentUnrecognizedType,
                   "Unrecognized attachment file type"};
    }
    if (*size > media->sizeLimit) {
      return Error{UNErrorDomain, UNErrorCodeAttachmentInvalidFileSize,
                   "Invalid attachment file size"};
    }
    return std::make_shared<const UNNotificationAttachment>(identifier, file,
                                                            std::string(media->identifier));
  }
};

}  // namespace

std::shared_ptr<NotificationAttachments> makeLinuxNotificationAttachments() {
  return std::make_shared<LinuxNotificationAttachments>();
}

}  // namespace morvelune
