#include <utility>

#include "platform/apple/AppleServices.h"
#import "platform/apple/Conversion.h"

namespace morvelune::apple {
namespace {

class AppleURLSessionTask : public URLSessionTask {
 public:
  explicit AppleURLSessionTask(NSURLSessionTask* task) : task_(retained(task)) {}

  // The platform starts a task once only, and keeps it until its completion has returned.
  void resume() override { [static_cast<NSURLSessionTask*>(objectOf(task_)) resume]; }
  [[nodiscard]] const Origin& native() const { return task_; }

 private:
  const Origin task_;
};

// Runs a completion and lets go of it, within a pool so that a large file does not stay mapped for
// longer than needed.
template <typename Completion, typename... Results>
void complete(Completion& completion, Results&&... results) {
  @autoreleasepool {
    completion(std::forward<Results>(results)...);
    completion = nullptr;
  }
}

// In the place of no address, and of one that is neither http nor https, the session is given one
// of a scheme that nobody serves. So the session itself fails the task.
NSURL* fetchable(const std::optional<URL>& url) {
  NSURL* native = url && url->isHTTP() ? toNative(*url) : nil;
  return native != nil ? native : [NSURL URLWithString:@"unsupported:"];
}

class AppleURLSession : public URLSession {
 public:
  std::shared_ptr<URLSessionTask> dataTask(std::optional<URL> url,
                                           DataCompletion completion) override {
    @autoreleasepool {
      const auto held = std::make_shared<DataCompletion>(std::move(completion));
      const auto completed = ^(NSData* data, NSURLResponse* response, NSError* error) {
        complete(*held, error ? std::nullopt : optionalFromNative(data),
                 error ? std::nullopt : fromNative(response), fromNative(error));
      };
      NSURLSessionTask* task = [[NSURLSession sharedSession] dataTaskWithURL:fetchable(url)
                                                           completionHandler:completed];
      return std::make_shared<AppleURLSessionTask>(task);
    }
  }

  std::shared_ptr<URLSessionTask> downloadTask(std::optional<URL> url,
                                               DownloadCompletion completion) override {
    @autoreleasepool {
      const auto held = std::make_shared<DownloadCompletion>(std::move(completion));
      const auto completed = ^(NSURL* location, NSURLResponse* response, NSError* error) {
        complete(*held, error ? std::nullopt : fromNative(location),
                 error ? std::nullopt : fromNative(response), fromNative(error));
      };
      NSURLSessionTask* task = [[NSURLSession sharedSession] downloadTaskWithURL:fetchable(url)
                                                               completionHandler:completed];
      return std::make_shared<AppleURLSessionTask>(task);
    }
  }
};

}  // namespace

NSURLSessionTask* toNative(const URLSessionTask* task) {
  const auto* made = dynamic_cast<const AppleURLSessionTask*>(task);
  return made != nullptr ? autoreleased(made->native()) : nil;
}

std::shared_ptr<URLSession> makeURLSession() {
  return std::make_shared<AppleURLSession>();
}

}  // namespace morvelune::apple
