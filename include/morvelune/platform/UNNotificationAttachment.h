// UNNotificationAttachment: a media file that is shown with a notification.
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "morvelune/platform/URL.h"
#include "morvelune/platform/Value.h"

namespace morvelune {

// Immutable; callable from any thread.
class UNNotificationAttachment {
 public:
  // `origin` is the platform's own object, when there is one.
  UNNotificationAttachment(std::string identifier, URL url, std::optional<std::string> type,
                           Origin origin = nullptr)
      : identifier_(std::move(identifier)),
        url_(std::move(url)),
        type_(std::move(type)),
        origin_(std::move(origin)) {}
  UNNotificationAttachment(const UNNotificationAttachment&) = delete;
  UNNotificationAttachment& operator=(const UNNotificationAttachment&) = delete;

  [[nodiscard]] const std::string& identifier() const { return identifier_; }
  // The file URL of the media file.
  [[nodiscard]] const URL& url() const { return url_; }
  // Its Uniform Type Identifier, such as "public.jpeg"; empty when the platform does not tell.
  [[nodiscard]] const std::optional<std::string>& type() const { return type_; }
  // The platform's own object; null when there is none.
  [[nodiscard]] const Origin& origin() const { return origin_; }

 private:
  std::string identifier_;
  URL url_;
  std::optional<std::string> type_;
  Origin origin_;
};

}  // namespace morvelune
