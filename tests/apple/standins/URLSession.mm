#include "Support.h"
#include "platform/linux/LinuxServices.h"

using Completion = void (^)(id body, NSURLResponse* response, NSError* error);

@interface StandinHTTPURLResponse : NSHTTPURLResponse {
  NSString* _suggestedFilename;
}
@end

@implementation StandinHTTPURLResponse

- (instancetype)initWithURL:(NSURL*)url response:(const morvelune::URLResponse&)response {
  self = [super initWithURL:url statusCode:response.statusCode HTTPVersion:nil headerFields:nil];
  const char* const name = response.suggestedFilename ? response.suggestedFilename->c_str() : "";
  _suggestedFilename = [[NSString alloc] initWithUTF8String:name];
  return self;
}

- (void)dealloc {
  [_suggestedFilename release];
  [super dealloc];
}

- (NSString*)suggestedFilename {
  return _suggestedFilename;
}

@end

namespace {

// What a task's `_state` points to.
using TaskHandle = std::shared_ptr<morvelune::URLSessionTask>;

// The session behind the shared one. It ends with the process, and all of its tasks with it.
morvelune::URLSession& session() {
  static const auto session = morvelune::makeLinuxURLSession({});
  return *session;
}

morvelune::URL urlOf(NSURL* url) {
  return morvelune::URL::unchecked([[url absoluteString] UTF8String]);
}

NSURL* nativeBody(const morvelune::URL& location) {
  return [NSURL URLWithString:[NSString stringWithUTF8String:location.absoluteString().c_str()]];
}

NSData* nativeBody(const morvelune::Data& data) {
  return [NSData dataWithBytes:data.bytes().data() length:data.size()];
}

// Makes the current thread known to the base library for as long as it lives.
void registerThread() {
  struct Registration {
    Registration() { GSRegisterCurrentThread(); }
    ~Registration() { GSUnregisterCurrentThread(); }
  };
  static thread_local const Registration registration;
}

auto calling(const void* handler, NSURL* url) {
  return [block = heldBlock(handler), address = urlOf(url)](const auto& body, const auto& response,
                                                            const auto& error) {
    registerThread();
    @autoreleasepool {
      NSURLResponse* const answer =
          response ? [[[StandinHTTPURLResponse alloc] initWithURL:nativeBody(address)
                                                         response:*response] autorelease]
                   : nil;
      ((Completion)block.get())(body ? nativeBody(*body) : nil, answer,
                                error ? nativeError(*error) : nil);
    }
  };
}

}  // namespace

@implementation NSURLSessionTask

- (instancetype)initWithTask:(const TaskHandle&)task {
  self = [super init];
  _state = new TaskHandle(task);
  return self;
}

- (void)dealloc {
  delete static_cast<TaskHandle*>(_state);
  [super dealloc];
}

- (void)resume {
  (*static_cast<TaskHandle*>(_state))->resume();
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
  const TaskHandle task = session().dataTask(urlOf(url), calling(handler, url));
  return [[[NSURLSessionDataTask alloc] initWithTask:task] autorelease];
}

- (NSURLSessionDownloadTask*)downloadTaskWithURL:(NSURL*)url
                               completionHandler:(StandinDownloadHandler)handler {
  const TaskHandle task = session().downloadTask(urlOf(url), calling(handler, url));
  return [[[NSURLSessionDownloadTask alloc] initWithTask:task] autorelease];
}

@end
