#include "Support.h"
#include "platform/linux/LinuxServices.h"

using Completion = void (^)(id body, NSURLResponse* response, NSError* error);

// Takes the name that it suggests from a field of that name.
@interface StandinHTTPURLResponse : NSHTTPURLResponse
@end

@implementation StandinHTTPURLResponse

- (NSString*)suggestedFilename {
  return [[self allHeaderFields] objectForKey:@"suggestedFilename"];
}

@end

namespace {

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

NSURLResponse* nativeResponse(const morvelune::URLResponse& response, const morvelune::URL& url) {
  const std::string name = response.suggestedFilename.value_or("");
  NSDictionary* const fields =
      @{@"suggestedFilename" : [NSString stringWithUTF8String:name.c_str()]};
  return [[[StandinHTTPURLResponse alloc] initWithURL:nativeBody(url)
                                           statusCode:response.statusCode
                                          HTTPVersion:nil
                                         headerFields:fields] autorelease];
}

auto calling(const std::shared_ptr<void>& block, NSURL* url) {
  return [block, address = urlOf(url)](const auto& body, const auto& response, const auto& error) {
    registerThread();
    @autoreleasepool {
      ((Completion)block.get())(body ? nativeBody(*body) : nil,
                                response ? nativeResponse(*response, address) : nil,
                                error ? nativeError(*error) : nil);
    }
  };
}

// What a task's `_state` points to. It keeps its block for as long as it lives, as the platform's
// may.
struct State {
  std::shared_ptr<void> block;
  std::shared_ptr<morvelune::URLSessionTask> task;
};

}  // namespace

@implementation NSURLSessionTask

+ (instancetype)taskWithState:(const State&)state {
  NSURLSessionTask* const task = [[[self alloc] init] autorelease];
  task->_state = new State(state);
  return task;
}

- (void)dealloc {
  delete static_cast<State*>(_state);
  [super dealloc];
}

- (void)resume {
  static_cast<State*>(_state)->task->resume();
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
  const auto block = heldBlock(handler);
  const auto task = session().dataTask(urlOf(url), calling(block, url));
  return [NSURLSessionDataTask taskWithState:{block, task}];
}

- (NSURLSessionDownloadTask*)downloadTaskWithURL:(NSURL*)url
                               completionHandler:(StandinDownloadHandler)handler {
  const auto block = heldBlock(handler);
  const auto task = session().downloadTask(urlOf(url), calling(block, url));
  return [NSURLSessionDownloadTask taskWithState:{block, task}];
}

@end
