#include "morvelune/MVLNotificationServiceExtension.h"

#include <utility>

#include "detection/MediaTypes.h"
#include "morvelune/MVLConstants.h"
#include "morvelune/MVLPushHelpers.h"
#include "morvelune/platform/Path.h"
#include "morvelune/platform/Platform.h"

namespace morvelune {

std::shared_ptr<const UNNotificationContent>
MVLNotificationServiceExtension::mvlBestAttemptContent() {
  updateBestAttemptContentAttachements();
  const auto content = internalBestAttemptContent();
  return content ? content->copy() : nullptr;
}

void MVLNotificationServiceExtension::excuteCompletionHandler() {
  updateBestAttemptContentAttachements();
  // Expiry may come before a request of this system; then there is no handler.
  if (const auto handler = internalContentHandler()) handler(internalBestAttemptContent());
}

void MVLNotificationServiceExtension::didReceiveNotificationRequest(
    const UNNotificationRequest& request, ContentHandler withContentHandler) {
  if (!MVLPushHelpers::isMorveluneNotification(request)) {
    withContentHandler(request.content);
    return;
  }
  platform_.store(Platform::current());
  const auto content = request.content->mutableCopy();
  setInternalContentHandler(withContentHandler);
  setInternalBestAttemptContent(content);
  setInternalAttachments({});
  setInternalOperationsCount(0);

  Tasks tasks;
  const Dictionary payload = request.content->userInfo().value_or(Dictionary());
  if (auto tracking = trackingTaskForNotification(payload)) {
    content->setUserInfo(payload.with(MVLPayloadTrackingSentKey, true));
    tasks.push_back(std::move(tracking));
  }
  for (auto& download : attachmentsTasksForNotification(payload)) {
    tasks.push_back(std::move(download));
  }
  if (tasks.empty()) {
    withContentHandler(request.content);
    return;
  }
  // Only now that all are counted may the first one run, so that the count cannot reach zero early.
  for (const auto& task : tasks) task->resume();
}

void MVLNotificationServiceExtension::serviceExtensionTimeWillExpire() {
  excuteCompletionHandler();
}

std::shared_ptr<const Platform> MVLNotificationServiceExtension::platform() const {
  const auto ofRequest = platform_.load();
  return ofRequest ? ofRequest : Platform::current();
}

void MVLNotificationServiceExtension::countDown() {
  setInternalOperationsCount(internalOperationsCount() - 1);
}

void MVLNotificationServiceExtension::deliverIfFinished() {
  if (internalOperationsCount() == 0) excuteCompletionHandler();
}

Dictionary MVLNotificationServiceExtension::UTIMap() const {
  return detection::signatureMap();
}

std::optional<std::string> MVLNotificationServiceExtension::UTIForData(
    const std::optional<Data>& data) const {
  return detection::typeOfContent(data);
}

std::optional<std::string> MVLNotificationServiceExtension::UTIForData(
    const std::optional<Data>& data, std::optional<std::string_view> suggestedFilename) const {
  if (auto type = detection::typeOfContent(data)) return type;
  const std::string extension = pathExtension(suggestedFilename.value_or(""));
  if (extension.empty()) return std::nullopt;
  auto type = detection::typeOfExtension(extension);
  platform()->systemLog->log("Try to find UTI using file extension [%@]. Result: [%@]",
                             {extension, type});
  return type;
}

Dictionary MVLNotificationServiceExtension::knownExtensionsMap() const {
  return detection::extensionMap();
}

MVLNotificationServiceExtension::ContentHandler
MVLNotificationServiceExtension::internalContentHandler() const {
  return internalContentHandler_.load();
}

void MVLNotificationServiceExtension::setInternalContentHandler(ContentHandler handler) {
  internalContentHandler_.store(std::move(handler));
}

std::shared_ptr<UNMutableNotificationContent>
MVLNotificationServiceExtension::internalBestAttemptContent() const {
  return internalBestAttemptContent_.load();
}

void MVLNotificationServiceExtension::setInternalBestAttemptContent(
    std::shared_ptr<UNMutableNotificationContent> content) {
  internalBestAttemptContent_.store(std::move(content));
}

MVLNotificationServiceExtension::Attachments MVLNotificationServiceExtension::internalAttachments()
    const {
  return internalAttachments_.load();
}

void MVLNotificationServiceExtension::setInternalAttachments(Attachments attachments) {
  internalAttachments_.store(std::move(attachments));
}

std::size_t MVLNotificationServiceExtension::internalOperationsCount() const {
  return internalOperationsCount_.load();
}

void MVLNotificationServiceExtension::setInternalOperationsCount(std::size_t count) {
  internalOperationsCount_.store(count);
}

}  // namespace morvelune
