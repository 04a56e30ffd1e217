// MVLNotificationServiceExtension: enriches and measures each notification before it is shown.
//
//   auto extension = std::make_shared<MVLNotificationServiceExtension>();
//   extension->didReceiveNotificationRequest(request, [](auto content) { show(content); });
//
// For a notification that this system sent it schedules the display tracking request and one
// download per attachment, starts them all at once and calls the handler with the enriched content
// when the last one has finished, or earlier when the platform says that time is up. Any other
// notification is handed back untouched.
//
// An object must be owned by a std::shared_ptr; without one a request that has tasks throws
// std::bad_weak_ptr. It handles one request at a time: the next may follow once the handler has
// been called, while the state of overlapping ones would mix. A request, expiry and reads of the
// best attempt may come on different threads while completions run on the session's callback
// thread. The handler is called on the thread of the request when there is nothing to wait for,
// else on the thread on which the last task finishes, or on that of the expiry. When tasks are left
// after expiry, it is called once more when the last one finishes.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "morvelune/platform/AtomicProperty.h"
#include "morvelune/platform/Export.h"
#include "morvelune/platform/UNNotificationServiceExtension.h"
#include "morvelune/platform/URL.h"
#include "morvelune/platform/URLSession.h"
#include "morvelune/platform/Value.h"

namespace morvelune {

struct Platform;

class MORVELUNE_API MVLNotificationServiceExtension
    : public UNNotificationServiceExtension,
      public std::enable_shared_from_this<MVLNotificationServiceExtension> {
 public:
  // A copy of the content that would be delivered now, with the attachments finished so far in
  // ascending byte order of their identifiers. Null before the first request of this system.
  [[nodiscard]] std::shared_ptr<const UNNotificationContent> mvlBestAttemptContent();

  // Processes one request, to its end on the platform that is in use now. The handler must not be
  // empty. It gets the request's own content, before this returns, when this system did not send
  // the notification or when there is nothing to do for it.
  void didReceiveNotificationRequest(const UNNotificationRequest& request,
                                     ContentHandler withContentHandler) override;

  // Calls the handler at once with what has been collected so far, whether or not it was called
  // before. Does nothing before the first request of this system.
  void serviceExtensionTimeWillExpire() override;

 protected:
  using Tasks = std::vector<std::shared_ptr<URLSessionTask>>;
  using Attachments = UNNotificationContent::Attachments;

  // Puts the attachments in place and calls the handler, if there is one, with the best attempt
  // content itself.
  void excuteCompletionHandler();
  // Sets the best attempt content's attachments: those collected, in ascending byte order of their
  // identifiers; among equal ones, in the order in which their downloads completed.
  void updateBestAttemptContentAttachements();

  // The display tracking request, not started; raises the operations count by one. Null, with no
  // effect, when the payload gives no tracking address for "display".
  [[nodiscard]] std::shared_ptr<URLSessionTask> trackingTaskForNotification(
      const Dictionary& notification);
  // One download per entry of "mvl-atts", in order, not started; raises the operations count by
  // their number before the first is made. Empty when there are none.
  [[nodiscard]] Tasks attachmentsTasksForNotification(const Dictionary& notification);
  // What a download's completion holds, so that this object lives until it has run. A subclass that
  // another object owns gives a pointer that keeps that one alive too.
  [[nodiscard]] virtual std::shared_ptr<MVLNotificationServiceExtension> retainedSelf() {
    return shared_from_this();
  }
  // The download of one entry, not started. An entry without a valid address gives a task that
  // fails; the identifier is "mvl.default.id" when the entry has none.
  [[nodiscard]] std::shared_ptr<URLSessionTask> downloadTaskForAttachment(
      const Dictionary& attachment);
  // Moves a downloaded file to a unique name in its folder. Gives that name's file URL, also when
  // the move failed, which is logged.
  [[nodiscard]] URL saveTempFile(const URL& tempFile, const std::string& attachmentWithIdentifier);

  // Signature records by type: Uniform Type Identifier to an array of records of FSign(). The same
  // object on every call. Any thread.
  [[nodiscard]] Dictionary UTIMap() const;
  // The type that the first 16 bytes tell; empty without data, with fewer bytes, and when no
  // signature matches.
  [[nodiscard]] std::optional<std::string> UTIForData(const std::optional<Data>& data) const;
  // The type that the content tells, else the file name's extension. Each look-up by extension is
  // logged, with its result.
  [[nodiscard]] std::optional<std::string> UTIForData(
      const std::optional<Data>& data, std::optional<std::string_view> suggestedFilename) const;
  // File-name extensions in lower case to types. The same object on every call. Any thread.
  [[nodiscard]] Dictionary knownExtensionsMap() const;

  // The properties. Each single read and single write is indivisible.
  [[nodiscard]] ContentHandler internalContentHandler() const;
  void setInternalContentHandler(ContentHandler handler);
  [[nodiscard]] std::shared_ptr<UNMutableNotificationContent> internalBestAttemptContent() const;
  void setInternalBestAttemptContent(std::shared_ptr<UNMutableNotificationContent> content);
  // In the order in which their downloads completed.
  [[nodiscard]] Attachments internalAttachments() const;
  void setInternalAttachments(Attachments attachments);
  // How many of the tasks that were made have not completed yet.
  [[nodiscard]] std::size_t internalOperationsCount() const;
  void setInternalOperationsCount(std::size_t count);

 private:
  // What serves the request: the platform that was in use when it arrived, else the current one.
  [[nodiscard]] std::shared_ptr<const Platform> platform() const;
  void finishDownload(const std::optional<URL>& attachmentURL, const std::string& identifier,
                      const URL& location, const std::optional<std::string>& suggestedFilename);
  void countDown();
  void deliverIfFinished();

  AtomicProperty<ContentHandler> internalContentHandler_;
  AtomicProperty<std::shared_ptr<UNMutableNotificationContent>> internalBestAttemptContent_;
  AtomicProperty<Attachments> internalAttachments_;
  AtomicProperty<std::size_t> internalOperationsCount_;
  // Null before the first request of this system.
  AtomicProperty<std::shared_ptr<const Platform>> platform_;
};

}  // namespace morvelune
