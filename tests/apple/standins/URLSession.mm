#include <atomic>
#include <utility>

#include "Support.h"
#include "platform/linux/CompletionQueue.h"
#include "platform/linux/LinuxServices.h"

using Completion = void (^)(id body, NSURLResponse* response, NSError* error);

@interface StandinHTTPURLResponse : NSHTTPURLResponse {
  NSInteger _statusCode;
  NSString* _suggestedFilename;
}
@end

@implementation StandinHTTPURLResponse

- (instancetype)initWithURL:(NSURL*)url response:(const morvelune::URLResponse&)response {
  self = [super initWithURL:url MIMEType:nil expectedContentLength:-1 textEncodingName:nil];
  _statusCode = response.statusCode;
  const char* const name = response.suggestedFilename ? response.suggestedFilename->c_str() : "";
  _suggestedFilename = [[NSString alloc] initWithUTF8String:name];
  return self;
}

- (void)dealloc {
  [_suggestedFilename release];
  [super dealloc];
}

- (NSInteger)statusCode {
  return _statusCode;
}

- (NSString*)suggestedFilename {
  return _suggestedFilename;
}

@end

namespace {

NSURL* nativeURL(const morvelune::URL& url) {
  return [NSURL URLWithString:[NSString stringWithUTF8String:url.absoluteString().c_str()]];
}

NSURLResponse* nativeResponse(const morvelune::URL& url, const morvelune::URLResponse& response) {
  return [[[StandinHTTPURLResponse alloc] initWithURL:nativeURL(url)
                                             response:response] autorelease];
}

id nativeBody(const morvelune::URL& location) {
  return nativeURL(location);
}

id nativeBody(const morvelune::Data& data) {
  return [NSData dataWithBytes:data.bytes().data() length:data.size()];
}

// A task's state, shared by its object and by what is under way for it.
struct Task {
  bool download = false;
  std::optional<morvelune::URL> url;
  std::shared_ptr<void> completion;  // from the start on the callback thread's; null once called
  std::atomic<bool> started = false;
  std::atomic<bool> cancelled = false;

  // On the callback thread. The first ending counts; a task that was cancelled has no other.
  void end(id body, NSURLResponse* response, NSError* error) {
    const std::shared_ptr<void> block = std::exchange(completion, nullptr);
    if (!block) return;
    if (cancelled) {
      body = response = nil;
      error =
          nativeError({morvelune::NSURLErrorDomain, morvelune::NSURLErrorCancelled, "cancelled"});
    }
    ((Completion)block.get())(body, response, error);
  }
};

// What a task's `_state` points to.
using TaskHandle = std::shared_ptr<Task>;

// Makes the current thread known to the base library for as long as it lives.
void registerThread() {
  struct Registration {
    Registration() { GSRegisterCurrentThread(); }
    ~Registration() { GSUnregisterCurrentThread(); }
  };
  static thread_local const Registration registration;
}

// The session behind the shared one. It ends with the process, and all of its tasks with it.
class Engine {
 public:
  static Engine& shared() {
    static Engine engine;
    return engine;
  }
  ~Engine() { session_->invalidateAndCancel(); }

  void start(const TaskHandle& task) {
    // A download's file lasts as long as this call.
    const auto deliver = [this, task](const auto& body, const auto& response, const auto& error) {
      post([&] {
        task->end(body ? nativeBody(*body) : nil,
                  response ? nativeResponse(*task->url, *response) : nil,
                  error ? nativeError(*error) : nil);
      });
      callbacks_.drain();
    };
    (task->download ? session_->downloadTask(task->url, deliver)
                    : session_->dataTask(task->url, deliver))
        ->resume();
  }

  void cancel(const TaskHandle& task) {
    task->started = task->cancelled = true;
    post([task] { task->end(nil, nil, nil); });
  }

 private:
  template <typename Job>
  void post(Job job) {
    callbacks_.post({[job](const auto&) {
                       registerThread();
                       @autoreleasepool {
                         job();
                       }
                     },
                     {}});
  }

  morvelune::CompletionQueue callbacks_;
  const std::shared_ptr<morvelune::URLSession> session_ = morvelune::makeLinuxURLSession({});
};

}  // namespace

@implementation NSURLSessionTask

- (instancetype)initWithURL:(NSURL*)url completionHandler:(const void*)handler {
  self = [super init];
  const auto task = std::make_shared<Task>();
  task->download = [self isKindOfClass:[NSURLSessionDownloadTask class]];
  if (url != nil) task->url = morvelune::URL::parse([[url absoluteString] UTF8String]);
  task->completion = heldBlock(handler);
  _state = new TaskHandle(task);
  return self;
}

- (void)dealloc {
  delete static_cast<TaskHandle*>(_state);
  [super dealloc];
}

- (void)resume {
  const TaskHandle& task = *static_cast<TaskHandle*>(_state);
  if (!task->started.exchange(true)) Engine::shared().start(task);
}

- (void)cancel {
  Engine::shared().cancel(*static_cast<TaskHandle*>(_state));
}

@end

@implementation NSURLSessionDataTask
@end

@implementation NSURLSessionDownloadTask
@end

@implementation NSURLSession

+ (NSURLSession*)sharedSession {
  static NSURLSession* const session = [[NSURLSession alloc] init];
  return session;
}

- (NSURLSessionDataTask*)dataTaskWithURL:(NSURL*)url completionHandler:(StandinDataHandler)handler {
  return [[[NSURLSessionDataTask alloc] initWithURL:url completionHandler:handler] autorelease];
}

- (NSURLSessionDownloadTask*)downloadTaskWithURL:(NSURL*)url
                               completionHandler:(StandinDownloadHandler)handler {
  return [[[NSURLSessionDownloadTask alloc] initWithURL:url completionHandler:handler] autorelease];
}

@end
