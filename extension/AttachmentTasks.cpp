// From the payload's attachment entries to the attachments of the best attempt content.
#include <map>
#include <utility>

#include "morvelune/MVLConstants.h"
#include "morvelune/MVLNotificationServiceExtension.h"
#include "morvelune/platform/Platform.h"
#include "payload/PayloadKeys.h"

namespace morvelune {
namespace {

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
  const auto address = attachment.stringView(MVLAttachmentURLKey);
  auto url = address ? URL::parse(*address) : std::nullopt;
  auto identifier =
      attachment.string(MVLAttachmentIDKey).value_or(keys::defaultAttachmentIdentifier);
  // The file that arrives is handled even when everyone else has let go of this object.
  auto completion = [self = retainedSelf(), url, identifier = std::move(identifier)](
                        const auto& location, const auto& response, const auto& error) {
    self->countDown();
    if (!error) {
      // A session of a host's own may give no location either. A path that no file has stands for
      // it: reading and moving fail, and the log tells so.
      self->finishDownload(url, identifier, location.value_or(URL::fileURL("")),
                           response ? response->suggestedFilename : std::nullopt);
    }
    self->deliverIfFinished();
  };
  return platform()->urlSession->downloadTask(std::move(url), std::move(completion));
}

void MVLNotificationServiceExtension::finishDownload(
    const std::optional<URL>& attachmentURL, const std::string& identifier, const URL& location,
    const std::optional<std::string>& suggestedFilename) {
  const auto serving = platform();
  const auto type = UTIForData(serving->fileManager->contents(location), suggestedFilename);
  if (!type) {
    serving->systemLog->log("Unknown UTI for attachment with url [%@]", {textOf(attachmentURL)});
  }
  const URL staged = saveTempFile(location, identifier);
  const auto result = serving->notificationAttachments->attachment(identifier, staged, type);
  if (const auto* error = std::get_if<Error>(&result)) {
    serving->systemLog->log("Failed to create attachment for  url [%@] with error [%@]",
                            {textOf(attachmentURL), error->localizedDescription});
    return;
  }
  Attachments attachments = internalAttachments();
  attachments.push_back(std::get<std::shared_ptr<const UNNotificationAttachment>>(result));
  setInternalAttachments(std::move(attachments));
}

URL MVLNotificationServiceExtension::saveTempFile(const URL& tempFile,
                                                  const std::string& attachmentWithIdentifier) {
  const auto serving = platform();
  const std::string source = tempFile.path();
  const std::string destination =
      source + "-" + attachmentWithIdentifier + "-" + serving->fileManager->globallyUniqueString();
  URL staged = URL::fileURL(destination);
  if (const auto error = serving->fileManager->moveItem(tempFile, staged)) {
    serving->systemLog->log(
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
    // Those of equal identifiers stay in their order.
    std::multimap<std::string_view, Attachments::value_type> byIdentifier;
    for (const auto& each : collected) byIdentifier.emplace(each->identifier(), each);
    Attachments sorted;
    for (const auto& [identifier, each] : byIdentifier) sorted.push_back(each);
    // One write, so that whoever reads the content meanwhile never finds it without attachments.
    content->setAttachments(std::move(sorted));
    // A completion may have collected one more in between, and put it in place before this write
    // took it out again.
  } while (internalAttachments() != collected);
}

}  // namespace morvelune
