#include <atomic>
#include <condition_variable>
#include <mutex>
#include <set>
#include <thread>
#include <utility>

#include "platform/apple/AppleServices.h"
#import "platform/apple/Conversion.h"

namespace morvelune::apple {
namespace {

// The tasks that were started and whose completion has not returned yet.
class StartedTasks {
 public:
  void start(NSURLSessionTask* task) {
    const bool cancelled = add(task);
    [task resume];
    if (cancelled) [task cancel];
  }

  // Runs a completion, and lets go of it and of its task.
  template <typename Completion, typename... Results>
  void complete(NSURLSessionTask* task, Completion& completion, Results&&... results) {
    setCompleting(std::this_thread::get_id());
    @autoreleasepool {  // so that a large file does not stay mapped longer than needed
      completion(std::forward<Results>(results)...);
      completion = nullptr;
    }
    setCompleting({});
    remove(task);
  }

  // Cancels all and waits for their completions, unless one of them is calling.
  void cancelAll() {
    std::unique_lock lock(mutex_);
    cancelled_ = true;
    for (NSURLSessionTask* task : tasks_) [task cancel];
    changed_.wait(lock,
                  [this] { return tasks_.empty() || completing_ == std::this_thread::get_id(); });
  }

 private:
  [[nodiscard]] bool add(NSURLSessionTask* task) {
    const std::lock_guard lock(mutex_);
    if (tasks_.insert(task).second) [task retain];
    return cancelled_;
  }

  // A task that was started past this object, by its owner, is not known here.
  void remove(NSURLSessionTask* task) {
    bool known = false;
    {
      const std::lock_guard lock(mutex_);
      known = tasks_.erase(task) > 0;
      changed_.notify_all();
    }
    if (known) [task release];  // which may release this object too
  }

  void setCompleting(std::thread::id thread) {
    const std::lock_guard lock(mutex_);
    completing_ = thread;
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::set<NSURLSessionTask*> tasks_;
  std::thread::id completing_;
  bool cancelled_ = false;
};

class AppleURLSessionTask : public URLSessionTask {
 public:
  AppleURLSessionTask(std::shared_ptr<StartedTasks> started, NSURLSessionTask* task)
      : started_(std::move(started)), task_(retained(task)) {}

  void resume() override {
    if (!resumed_.exchange(true)) started_->start(native());
  }
  [[nodiscard]] NSURLSessionTask* native() const { return objectOf(task_); }

 private:
  const std::shared_ptr<StartedTasks> started_;
  const Origin task_;
  std::atomic<bool> resumed_{false};
};

// An address whose scheme nobody serves stands for none and for those that are not fetched, so that
// the session itself ends the task.
NSURL* fetchable(const std::optional<URL>& url) {
  const std::string scheme = url ? url->scheme() : "";
  NSURL* native = scheme == "http" || scheme == "https" ? toNative(*url) : nil;
  return native != nil ? native : [NSURL URLWithString:@"unsupported:"];
}

class AppleURLSession : public URLSession {
 public:
  std::shared_ptr<URLSessionTask> dataTask(std::optional<URL> url,
                                           DataCompletion completion) override {
    @autoreleasepool {
      __block NSURLSessionDataTask* task = nil;
      const auto held = std::make_shared<DataCompletion>(std::move(completion));
      const auto started = started_;
      const auto completed = ^(NSData* data, NSURLResponse* response, NSError* error) {
        started->complete(task, *held, error ? std::nullopt : optionalFromNative(data),
                          error ? std::nullopt : fromNative(response), fromNative(error));
      };
      task = [[NSURLSession sharedSession] dataTaskWithURL:fetchable(url)
                                         completionHandler:completed];
      return std::make_shared<AppleURLSessionTask>(started_, task);
    }
  }

  std::shared_ptr<URLSessionTask> downloadTask(std::optional<URL> url,
                                               DownloadCompletion completion) override {
    @autoreleasepool {
      __block NSURLSessionDownloadTask* task = nil;
      const auto held = std::make_shared<DownloadCompletion>(std::move(completion));
      const auto started = started_;
      const auto completed = ^(NSURL* location, NSURLResponse* response, NSError* error) {
        started->complete(task, *held, error ? std::nullopt : fromNative(location),
                          error ? std::nullopt : fromNative(response), fromNative(error));
      };
      task = [[NSURLSession sharedSession] downloadTaskWithURL:fetchable(url)
                                             completionHandler:completed];
      return std::make_shared<AppleURLSessionTask>(started_, task);
    }
  }

  void invalidateAndCancel() override { started_->cancelAll(); }

 private:
  const std::shared_ptr<StartedTasks> started_ = std::make_shared<StartedTasks>();
};

}  // namespace

NSURLSessionTask* toNative(const URLSessionTask* task) {
  const auto* made = dynamic_cast<const AppleURLSessionTask*>(task);
  return made ? [[made->native() retain] autorelease] : nil;
}

std::shared_ptr<URLSession> makeURLSession() {
  return std::make_shared<AppleURLSession>();
}

}  // namespace morvelune::apple
