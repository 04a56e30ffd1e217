// NotificationAttachments: makes the platform's attachment objects from media files.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "morvelune/platform/Error.h"
#include "morvelune/platform/Export.h"
#include "morvelune/platform/UNNotificationAttachment.h"

namespace morvelune {

// Callable from any thread.
class MORVELUNE_API NotificationAttachments {
 public:
  using Result = std::variant<std::shared_ptr<const UNNotificationAttachment>, Error>;

  virtual ~NotificationAttachments() = default;

  // An attachment of the file, which stays where it is. Its type is `typeHint`, a Uniform Type
  // Identifier, else what the file's extension says. Refused with an error of UNErrorDomain: a
  // file that does not exist or no file URL (UNErrorCodeAttachmentInvalidURL), a type that the
  // platform does not show (UNErrorCodeAttachmentUnrecognizedType), and a file above the limit of
  // its family (UNErrorCodeAttachmentInvalidFileSize).
  [[nodiscard]] virtual Result attachment(const std::string& identifier, const URL& file,
                                          std::optional<std::string_view> typeHint) const = 0;
};

}  // namespace morvelune
