// From the payload's attachment entries to the attachments of the best attempt content.
#include <algorithm>
#include <utility>

#include "morvelune/MVLConstants.h"
#include "morvelune/MVLNotificationServiceExtension.h"
#include "morvelune/platform/Platform.h"

namespace morvelune {
namespace {

// The identifier of an attachment whose entry has none.
constexpr char defaultIdentifier[] = "mvl.default.id";

std::optional<std::string_view> textOf(const std::optional<URL>& url) {
  return url ? std::optional<std::string_view>(url->absoluteString()) : std::nullopt;
}

}  // namespace

MVLNotificationServiceExtension::Tasks
MVLNotificationServiceExtension::attachmentsTasksForNotification(const Dictionary& notification) {
  const auto entries = notification.array(MVLPayloadAttachmentsKey);
  if (!entries || entries->empty()) return {};
  setInternalOperationsCount(internalOperationsCount() + entries->size());
  Tasks tasks;
  for (const Value& entry : *entries) {
    // An entry that is no dictionary is one without an address: its task fails and is counted down.
    tasks.push_back(downloadTaskForAttachment(entry.dictionary().value_or(Dictionary())));
  }
  return tasks;
}

std::shared_ptr<URLSessionTask> MVLNotificationServiceExtension::downloadTaskForAttachment(
    const Dictionary& attachment) {
  const auto address = attachment.string(MVLAttachmentURLKey);
  auto url = address ? URL::parse(*address) : std::nullopt;
  auto identifier = attachment.string(MVLAttachmentIDKey).value_or(defaultIdentifier);
  // Type detection needs this object even when all others have let go of it.
  auto completion = [self = retainedSelf(), url, identifier = std::move(identifier)](
                        const auto& location, const auto& response, const auto& error) {
    self->countDown();
    if (!error && location) {
      self->finishDownload(url, identifier, *location,
                           response ? response->suggestedFilename : std::nullopt);
    }
    self->deliverIfFinished();
  };
  return Platform::current()->urlSession->downloadTask(std::move(url), std::move(completion));
}

void MVLNotificationServiceExtension::finishDownload(
    const std::optional<URL>& attachmentURL, const std::string& identifier, const URL& location,
    const std::optional<std::string>& suggestedFilename) {
  const auto platform = Platform::current();
  const auto type = UTIForData(platform->fileManager->contents(location), suggestedFilename);
  if (!type) {
    platform->systemLog->log("Unknown UTI for attachment with url [%@]", {textOf(attachmentURL)});
  }
  const URL staged = saveTempFile(location, identifier);
  const auto result = platform->notificationAttachments->attachment(identifier, staged, type);
  if (const auto* error = std::get_if<Error>(&result)) {
    platform->systemLog->log("Failed to create attachment for  url [%@] with error [%@]",
                             {textOf(attachmentURL), error->localizedDescription});
    return;
  }
  Attachments attachments = internalAttachments();
  attachments.push_back(std::get<std::shared_ptr<const UNNotificationAttachment>>(result));
  setInternalAttachments(std::move(attachments));
}

URL MVLNotificationServiceExtension::saveTempFile(const URL& tempFile,
                                                  const std::string& attachmentWithIdentifier) {
  const auto platform = Platform::current();
  const std::string source = tempFile.path();
  const std::string destination =
      source + "-" + attachmentWithIdentifier + "-" + platform->fileManager->globallyUniqueString();
  URL staged = URL::fileURL(destination);
  if (const auto error = platform->fileManager->moveItem(tempFile, staged)) {
    platform->systemLog->log(
        "Attachment [%@] tmp file moving from [%@] to [%@] failded with error [%@]",
        {attachmentWithIdentifier, source, destination, error->localizedDescription});
  }
  return staged;
}

void MVLNotificationServiceExtension::updateBestAttemptContentAttachements() {
  const auto content = internalBestAttemptContent();
  if (!content) return;
  Attachments collected;
  do {
    collected = internalAttachments();
    Attachments sorted = collected;
    std::stable_sort(sorted.begin(), sorted.end(), [](const auto& left, const auto& right) {
      return left->identifier() < right->identifier();
    });
    // One write, so that whoever reads the content meanwhile never finds it without attachments.
    content->setAttachments(std::move(sorted));
    // A completion may have collected one more in between, and put it in place before this write
    // took it out again.
  } while (internalAttachments() != collected);
}

}  // namespace morvelune
