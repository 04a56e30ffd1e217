#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/linux/CompletionQueue.h"
#include "platform/linux/LinuxServices.h"
#include "platform/linux/TransferLoop.h"

namespace morvelune {
namespace {

// The folder for downloads as an absolute path, because downloads are given as file URLs. A path
// that cannot be made absolute stays as it is.
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
  for (std::chrono::seconds* limit : {&options.idleTimeout, &options.resourceTimeout}) {
    *limit =
        std::clamp(*limit, URLSessionOptions::shortestTimeout, URLSessionOptions::longestTimeout);
  }
  options.temporaryDirectory = downloadFolder(options.temporaryDirectory);
  return options;
}

// The two threads of a session. Lives as long as the session or any of its tasks, because a task
// that is started after the session has gone still gets its completion.
struct Engine {
  explicit Engine(const URLSessionOptions& options) : loop(options, completions) {}

  CompletionQueue completions;
  TransferLoop loop;
  const pid_t owner = getpid();
};

// A forked child has no copy of the threads, and may have their locks as they were held. There an
// engine is left alone, with all that it holds.
std::shared_ptr<Engine> makeEngine(const URLSessionOptions& options) {
  return {new Engine(options), [](Engine* engine) {
            if (engine->owner == getpid()) delete engine;
          }};
}

class CurlURLSessionTask : public URLSessionTask {
 public:
  CurlURLSessionTask(std::shared_ptr<Engine> engine, TransferRequest request)
      : engine_(std::move(engine)), request_(std::move(request)) {}

  void resume() override {
    if (!resumed_.exchange(true)) engine_->loop.start(std::move(request_));
  }

 private:
  const std::shared_ptr<Engine> engine_;
  TransferRequest request_;
  std::atomic<bool> resumed_ = false;
};

class CurlURLSession : public LinuxURLSession {
 public:
  explicit CurlURLSession(const URLSessionOptions& options) : engine_(makeEngine(options)) {}
  ~CurlURLSession() override { CurlURLSession::invalidateAndCancel(); }
  CurlURLSession(const CurlURLSession&) = delete;
  CurlURLSession& operator=(const CurlURLSession&) = delete;

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
    if (engine_->owner != getpid()) return;
    engine_->loop.stop();
    engine_->completions.drain();
  }

 private:
  std::shared_ptr<URLSessionTask> task(TransferRequest request) {
    return std::make_shared<CurlURLSessionTask>(engine_, std::move(request));
  }

  const std::shared_ptr<Engine> engine_;
};

// All sessions. They are ended at exit, because the libraries that they run on clean up then.
class Sessions {
 public:
  void add(const std::shared_ptr<LinuxURLSession>& session) {
    const std::lock_guard lock(mutex_);
    owner_ = getpid();  // a forked child ends the sessions that it makes itself
    std::erase_if(sessions_, [](const auto& each) { return each.expired(); });
    sessions_.push_back(session);
  }

  void end() {
    if (getpid() != owner_) return;
    for (const auto& each : taken()) {
      if (const auto session = each.lock()) session->invalidateAndCancel();
    }
  }

 private:
  // No lock is held while a session ends, because its completions may make platforms.
  [[nodiscard]] std::vector<std::weak_ptr<LinuxURLSession>> taken() {
    const std::lock_guard lock(mutex_);
    return std::exchange(sessions_, {});
  }

  std::atomic<pid_t> owner_ = getpid();
  std::mutex mutex_;
  std::vector<std::weak_ptr<LinuxURLSession>> sessions_;
};

// Never destroyed, because threads that still run at exit may make one.
Sessions& sessions() {
  static auto& sessions = *new Sessions;
  return sessions;
}

}  // namespace

std::shared_ptr<LinuxURLSession> makeLinuxURLSession(const URLSessionOptions& options) {
  const auto session = std::make_shared<CurlURLSession>(resolved(options));
  // After the first session, which starts those libraries: what is registered last runs first.
  [[maybe_unused]] static const int registered = std::atexit([] { sessions().end(); });
  sessions().add(session);
  return session;
}

}  // namespace morvelune
