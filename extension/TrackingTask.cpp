#include "morvelune/MVLConstants.h"
#include "morvelune/MVLNotificationServiceExtension.h"
#include "morvelune/MVLPushHelpers.h"
#include "morvelune/platform/Platform.h"

namespace morvelune {

std::shared_ptr<URLSessionTask> MVLNotificationServiceExtension::trackingTaskForNotification(
    const Dictionary& notification) {
  const auto url =
      MVLPushHelpers::trackingURLForAction(MVLUNCenterTrackingActionReceived, notification);
  if (!url) return nullptr;
  platform()->systemLog->log("//--// track url: %@", {url->absoluteString()});
  setInternalOperationsCount(internalOperationsCount() + 1);
  // Success, an error status and a failure are treated alike: nothing of the answer is read.
  return platform()->urlSession->dataTask(
      url, [weakSelf = std::weak_ptr(shared_from_this())](const auto&, const auto&, const auto&) {
        const auto self = weakSelf.lock();
        if (!self) return;
        self->countDown();
        self->deliverIfFinished();
      });
}

}  // namespace morvelune
