#include "tools/morvelune/Recorder.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <mutex>
#include <utility>

namespace morvelune::tool {
namespace {

std::uintmax_t bodySize(const Data& body) {
  return body.size();
}

std::uintmax_t bodySize(const URL& file) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(file.path(), error);
  return error ? 0 : size;
}

}  // namespace

// What all decorators share.
class Recorder::Notes {
 public:
  using Request = std::shared_ptr<RecordedRequest>;

  explicit Notes(std::vector<AttachmentEntry> entries) : entries_(std::move(entries)) {}

  [[nodiscard]] double elapsedMs() const {
    return std::chrono::duration<double, std::milli>(Clock::now() - start_).count();
  }

  Request make(RecordedRequest::Kind kind, const std::optional<URL>& url) {
    auto request = std::make_shared<RecordedRequest>();
    request->kind = kind;
    if (url) request->url = url->absoluteString();
    const std::lock_guard lock(mutex_);
    if (kind == RecordedRequest::Kind::attachment && downloads_ < entries_.size()) {
      request->identifier = entries_[downloads_].identifier;
      request->url = entries_[downloads_++].address;
    }
    return request;
  }

  void start(const Request& request) {
    const std::lock_guard lock(mutex_);
    if (finished_) return;
    request->startedMs = elapsedMs();
    started_.push_back(request);
  }

  void end(RecordedRequest& request, std::uintmax_t bytes,
           const std::optional<URLResponse>& response, const std::optional<Error>& error) {
    const std::lock_guard lock(mutex_);
    request.outcome = error ? RecordedRequest::Outcome::failed : RecordedRequest::Outcome::finished;
    request.finishedMs = elapsedMs();
    request.bytes = bytes;
    if (response) request.status = response->statusCode;
    if (error) request.error = error->localizedDescription;
  }

  void settle() {
    const std::lock_guard lock(mutex_);
    ++settled_;
  }

  [[nodiscard]] std::size_t pending() const {
    const std::lock_guard lock(mutex_);
    return started_.size() - settled_;
  }

  void log(const std::string& line) {
    const std::lock_guard lock(mutex_);
    if (!finished_) rest_.log.push_back(line);
  }

  void refuse(const std::string& identifier, const Error& error) {
    const std::lock_guard lock(mutex_);
    rest_.refused.push_back({identifier, error.localizedDescription});
  }

  Recording finish() {
    const std::lock_guard lock(mutex_);
    finished_ = true;
    Recording recording = rest_;
    for (const Request& request : started_) recording.requests.push_back(*request);
    return recording;
  }

 private:
  using Clock = std::chrono::steady_clock;

  const Clock::time_point start_ = Clock::now();
  const std::vector<AttachmentEntry> entries_;
  mutable std::mutex mutex_;
  std::size_t downloads_ = 0;
  std::vector<Request> started_;
  std::size_t settled_ = 0;
  Recording rest_;  // all but the requests
  bool finished_ = false;
};

class Recorder::Session : public URLSession {
 public:
  Session(std::shared_ptr<URLSession> session, std::shared_ptr<MainQueue> mainQueue,
          std::shared_ptr<Notes> notes)
      : session_(std::move(session)), mainQueue_(std::move(mainQueue)), notes_(std::move(notes)) {}

  [[nodiscard]] std::shared_ptr<URLSessionTask> dataTask(std::optional<URL> url,
                                                         DataCompletion completion) override {
    auto request = notes_->make(RecordedRequest::Kind::tracking, url);
    return noted(request,
                 session_->dataTask(std::move(url), noting<Data>(request, std::move(completion))));
  }

  [[nodiscard]] std::shared_ptr<URLSessionTask> downloadTask(
      std::optional<URL> url, DownloadCompletion completion) override {
    auto request = notes_->make(RecordedRequest::Kind::attachment, url);
    return noted(request, session_->downloadTask(std::move(url),
                                                 noting<URL>(request, std::move(completion))));
  }

 private:
  class Task : public URLSessionTask {
   public:
    Task(std::function<void()> start, std::shared_ptr<URLSessionTask> task)
        : start_(std::move(start)), task_(std::move(task)) {}
    void resume() override {
      std::call_once(started_, start_);
      task_->resume();
    }

   private:
    std::once_flag started_;
    std::function<void()> start_;
    std::shared_ptr<URLSessionTask> task_;
  };

  [[nodiscard]] std::shared_ptr<URLSessionTask> noted(const Notes::Request& request,
                                                      std::shared_ptr<URLSessionTask> task) const {
    return std::make_shared<Task>([notes = notes_, request] { notes->start(request); },
                                  std::move(task));
  }

  template <typename Body, typename Completion>
  [[nodiscard]] Completion noting(Notes::Request request, Completion completion) const {
    return [notes = notes_, mainQueue = mainQueue_, request = std::move(request),
            completion = std::move(completion)](std::optional<Body> body,
                                                std::optional<URLResponse> response,
                                                std::optional<Error> error) {
      notes->end(*request, body ? bodySize(*body) : 0, response, error);
      completion(std::move(body), std::move(response), std::move(error));
      mainQueue->async([notes] { notes->settle(); });
    };
  }

  const std::shared_ptr<URLSession> session_;
  const std::shared_ptr<MainQueue> mainQueue_;
  const std::shared_ptr<Notes> notes_;
};

class Recorder::Attachments : public NotificationAttachments {
 public:
  Attachments(std::shared_ptr<NotificationAttachments> attachments, std::shared_ptr<Notes> notes)
      : attachments_(std::move(attachments)), notes_(std::move(notes)) {}

  [[nodiscard]] Result attachment(const std::string& identifier, const URL& file,
                                  std::optional<std::string_view> typeHint) const override {
    Result result = attachments_->attachment(identifier, file, typeHint);
    if (const auto* error = std::get_if<Error>(&result)) notes_->refuse(identifier, *error);
    return result;
  }

 private:
  const std::shared_ptr<NotificationAttachments> attachments_;
  const std::shared_ptr<Notes> notes_;
};

class Recorder::Log : public SystemLog {
 public:
  explicit Log(std::shared_ptr<Notes> notes) : notes_(std::move(notes)) {}

  void writeLine(const std::string& line) override { notes_->log(line); }

 private:
  const std::shared_ptr<Notes> notes_;
};

Recorder::Recorder(std::vector<AttachmentEntry> entries)
    : notes_(std::make_shared<Notes>(std::move(entries))) {}

std::shared_ptr<const Platform> Recorder::decorate(const Platform& platform) const {
  auto decorated = std::make_shared<Platform>(platform);
  decorated->urlSession =
      std::make_shared<Session>(platform.urlSession, platform.mainQueue, notes_);
  decorated->notificationAttachments =
      std::make_shared<Attachments>(platform.notificationAttachments, notes_);
  decorated->systemLog = std::make_shared<Log>(notes_);
  return decorated;
}

double Recorder::elapsedMs() const {
  return notes_->elapsedMs();
}
std::size_t Recorder::pending() const {
  return notes_->pending();
}
Recording Recorder::finish() {
  return notes_->finish();
}

}  // namespace morvelune::tool
