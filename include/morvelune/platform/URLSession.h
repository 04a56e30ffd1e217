// URLSession: the platform's shared session, which performs HTTP GET requests.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "morvelune/platform/Error.h"
#include "morvelune/platform/Export.h"
#include "morvelune/platform/URL.h"
#include "morvelune/platform/Value.h"

namespace morvelune {

// What a server answered. Error statuses are answers, not failures.
struct URLResponse {
  int statusCode = 0;
  // The file name that the server suggests: that of Content-Disposition, else the last path
  // component of the URL that answered, percent-decoded, else its host, else "unknown". Valid
  // UTF-8 without '/'; empty when the session cannot tell.
  std::optional<std::string> suggestedFilename;
};

// One request. Made suspended; a task that is never resumed is dropped without a completion.
class MORVELUNE_API URLSessionTask {
 public:
  virtual ~URLSessionTask() = default;
  // Starts the request and returns at once. Later calls do nothing. Any thread. A request that
  // cannot be started fails like any other.
  virtual void resume() = 0;
};

// All started tasks run at once, as far as the system's resources go, memory among them, each a GET
// with the session's defaults. Completions are called one at a time on the session's own callback
// thread, which is not the thread that moves bytes, so a slow completion holds back other
// completions but no transfer. The completion of each started task is called exactly once, whatever
// happens, and is released soon after it returned; it must not throw. When a request fails, the
// error is present and data, location and response are empty; otherwise the error is empty and the
// others are present. The library decides by the error only: a download that gives neither an error
// nor a location counts as a file that can be neither read nor moved.
class MORVELUNE_API URLSession {
 public:
  using DataCompletion =
      std::function<void(std::optional<Data>, std::optional<URLResponse>, std::optional<Error>)>;
  // `location` is the file URL of a private temporary file, which is deleted after the completion
  // returns unless it was moved.
  using DownloadCompletion = std::function<void(std::optional<URL> location,
                                                std::optional<URLResponse>, std::optional<Error>)>;

  virtual ~URLSession() = default;

  // A task, never null, that keeps the answer's body in memory. Without a URL, or with one that is
  // neither http nor https, the started task fails with NSURLErrorUnsupportedURL. Any thread.
  [[nodiscard]] virtual std::shared_ptr<URLSessionTask> dataTask(std::optional<URL> url,
                                                                 DataCompletion completion) = 0;
  // The same for a body that is streamed to a temporary file and never held in memory.
  [[nodiscard]] virtual std::shared_ptr<URLSessionTask> downloadTask(
      std::optional<URL> url, DownloadCompletion completion) = 0;
};

}  // namespace morvelune
