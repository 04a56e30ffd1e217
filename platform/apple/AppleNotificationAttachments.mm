#include "platform/apple/AppleServices.h"
#import "platform/apple/Conversion.h"

namespace morvelune::apple {
namespace {

class AppleNotificationAttachments : public NotificationAttachments {
 public:
  [[nodiscard]] Result attachment(const std::string& identifier, const URL& file,
                                  std::optional<std::string_view> typeHint) const override {
    NSDictionary* options =
        typeHint ? @{UNNotificationAttachmentOptionsTypeHintKey : toNative(*typeHint)} : nil;
    NSError* error = nil;
    ::UNNotificationAttachment* made =
        [::UNNotificationAttachment attachmentWithIdentifier:toNative(identifier)
                                                         URL:toNative(file)
                                                     options:options
                                                       error:&error];
    if (made != nil) return fromNative(made);
    return fromNative(error).value_or(Error{UNErrorDomain, UNErrorCodeAttachmentInvalidURL, ""});
  }
};

}  // namespace

std::shared_ptr<NotificationAttachments> makeNotificationAttachments() {
  return std::make_shared<AppleNotificationAttachments>();
}

}  // namespace morvelune::apple
