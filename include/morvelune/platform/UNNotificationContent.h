// UNNotificationContent and UNMutableNotificationContent: what a notification shows and carries.
//
//   auto content = std::make_shared<const UNNotificationContent>(UNNotificationContent::Fields{
//       .title = "Sale", .userInfo = Dictionary{{"k2tid", "1"}}});
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "morvelune/platform/AtomicProperty.h"
#include "morvelune/platform/Export.h"
#include "morvelune/platform/UNNotificationAttachment.h"
#include "morvelune/platform/Value.h"

namespace morvelune {

class UNMutableNotificationContent;

// May be read from any thread, also while it is written. A platform may derive its own class, whose
// copies copy the native object too.
class MORVELUNE_API UNNotificationContent {
 public:
  using Attachments = std::vector<std::shared_ptr<const UNNotificationAttachment>>;

  struct Fields {
    std::optional<std::string> title = {};
    std::optional<std::string> subtitle = {};
    std::optional<std::string> body = {};
    std::optional<Dictionary> userInfo = {};  // the payload as delivered
    Attachments attachments = {};
  };

  UNNotificationContent() = default;
  // `origin` is the platform's own object, when there is one.
  explicit UNNotificationContent(Fields fields, Origin origin = nullptr);
  virtual ~UNNotificationContent() = default;
  UNNotificationContent(const UNNotificationContent&) = delete;
  UNNotificationContent& operator=(const UNNotificationContent&) = delete;

  [[nodiscard]] const std::optional<std::string>& title() const { return title_; }
  [[nodiscard]] const std::optional<std::string>& subtitle() const { return subtitle_; }
  [[nodiscard]] const std::optional<std::string>& body() const { return body_; }
  // The payload; empty when the content has none.
  [[nodiscard]] std::optional<Dictionary> userInfo() const { return userInfo_.load(); }
  [[nodiscard]] Attachments attachments() const { return attachments_.load(); }
  // The platform's own object; null when there is none.
  [[nodiscard]] const Origin& origin() const { return origin_; }

  // A new content with the same fields that can be written. Never null.
  [[nodiscard]] virtual std::shared_ptr<UNMutableNotificationContent> mutableCopy() const;
  // A content with the same fields that no later write changes. Never null.
  [[nodiscard]] virtual std::shared_ptr<const UNNotificationContent> copy() const;

 protected:
  [[nodiscard]] Fields fields() const;
  AtomicProperty<std::optional<Dictionary>> userInfo_;
  AtomicProperty<Attachments> attachments_;

 private:
  std::optional<std::string> title_;
  std::optional<std::string> subtitle_;
  std::optional<std::string> body_;
  Origin origin_;
};

// A content whose payload and attachments can be written, each write indivisible, from any thread.
class MORVELUNE_API UNMutableNotificationContent : public UNNotificationContent {
 public:
  using UNNotificationContent::UNNotificationContent;

  virtual void setUserInfo(Dictionary userInfo) { userInfo_.store(std::move(userInfo)); }
  virtual void setAttachments(Attachments attachments) {
    attachments_.store(std::move(attachments));
  }
};

}  // namespace morvelune
