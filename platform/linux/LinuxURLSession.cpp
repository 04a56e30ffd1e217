#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include "platform/linux/CompletionQueue.h"
#include "platform/linux/LinuxServices.h"
#include "platform/linux/TransferLoop.h"

namespace morvelune {
namespace {

// The absolute path of the folder for downloads, since they are handed over as file URLs.
std::string downloadFolder(const std::string& wanted) {
  const char* const environment = std::getenv("TMPDIR");
  std::string folder = wanted;
  if (folder.empty() && environment != nullptr) folder = environment;
  if (folder.empty()) folder = "/tmp";
  std::error_code failed;
  const std::filesystem::path absolute = std::filesystem::absolute(folder, failed);
  return failed ? folder : absolute.string();
}

URLSessionOptions resolved(URLSessionOptions options) {
  options.temporaryDirectory = downloadFolder(options.temporaryDirectory);
  return options;
}

// The two threads of a session. Lives as long as the session or any of its tasks, because a task
// that is started after the session has gone still gets its completion.
struct Engine {
  explicit Engine(const URLSessionOptions& options) : loop(options, completions) {}

  CompletionQueue completions;
  TransferLoop loop;
};

class LinuxURLSessionTask : public URLSessionTask {
 public:
  LinuxURLSessionTask(std::shared_ptr<Engine> engine, TransferRequest request)
      : engine_(std::move(engine)), request_(std::move(request)) {}

  void resume() override {
    if (!resumed_.exchange(true)) engine_->loop.start(std::move(request_));
  }

 private:
  const std::shared_ptr<Engine> engine_;
  TransferRequest request_;
  std::atomic<bool> resumed_ = false;
};

class LinuxURLSession : public URLSession {
 public:
  explicit LinuxURLSession(const URLSessionOptions& options)
      : engine_(std::make_shared<Engine>(options)) {}
  ~LinuxURLSession() override { LinuxURLSession::invalidateAndCancel(); }
  LinuxURLSession(const LinuxURLSession&) = delete;
  LinuxURLSession& operator=(const LinuxURLSession&) = delete;

  std::shared_ptr<URLSessionTask> dataTask(std::optional<URL> url,
                                           DataCompletion completion) override {
    auto deliver = [completion = std::move(completion)](TransferOutcome outcome) {
      std::optional<Data> data;
      if (!outcome.error) data = Data(std::move(outcome.data));
      completion(std::move(data), std::move(outcome.response), std::move(outcome.error));
    };
    return task({std::move(url), BodyDestination::memory, std::move(deliver)});
  }

  std::shared_ptr<URLSessionTask> downloadTask(std::optional<URL> url,
                                               DownloadCompletion completion) override {
    // The outcome's file, if it is still there, goes when the completion has returned.
    auto deliver = [completion = std::move(completion)](TransferOutcome outcome) {
      std::optional<URL> location;
      if (!outcome.error) location = URL::fileURL(outcome.file->path());
      completion(std::move(location), std::move(outcome.response), std::move(outcome.error));
    };
    return task({std::move(url), BodyDestination::temporaryFile, std::move(deliver)});
  }

  void invalidateAndCancel() override {
    engine_->loop.stop();
    engine_->completions.drain();
  }

 private:
  std::shared_ptr<URLSessionTask> task(TransferRequest request) {
    return std::make_shared<LinuxURLSessionTask>(engine_, std::move(request));
  }

  const std::shared_ptr<Engine> engine_;
};

}  // namespace

std::shared_ptr<URLSession> makeLinuxURLSession(const URLSessionOptions& options) {
  return std::make_shared<LinuxURLSession>(resolved(options));
}

}  // namespace morvelune
