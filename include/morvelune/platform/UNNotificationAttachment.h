// UNNotificationAttachment: a media file that is shown with a notification.
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "morvelune/platform/URL.h"

namespace morvelune {

// Immutable. A platform derives its own to carry its native object along.
class UNNotificationAttachment {
 public:
  UNNotificationAttachment(std::string identifier, URL url, std::optional<std::string> type)
      : identifier_(std::move(identifier)), url_(std::move(url)), type_(std::move(type)) {}
  virtual ~UNNotificationAttachment() = default;
  UNNotificationAttachment(const UNNotificationAttachment&) = delete;
  UNNotificationAttachment& operator=(const UNNotificationAttachment&) = delete;

  [[nodiscard]] const std::string& identifier() const { return identifier_; }
  // The file URL of the media file.
  [[nodiscard]] const URL& url() const { return url_; }
  // Its Uniform Type Identifier, such as "public.jpeg"; empty when the platform does not tell.
  [[nodiscard]] const std::optional<std::string>& type() const { return type_; }

 private:
  std::string identifier_;
  URL url_;
  std::optional<std::string> type_;
};

}  // namespace morvelune
