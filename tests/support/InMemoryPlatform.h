// A platform whose network, device, locale and log are what the test says. Its files are real.
//
//   InMemoryPlatform memory;                       // installed until it goes out of scope
//   memory.network().answer("http://h/a.png", {.body = pngBytes()});
//   ...start tasks...
//   memory.network().finish("http://h/a.png");     // runs the completion, on this thread
#pragma once

#include <algorithm>
#include <array>
#include <deque>
#include <filesystem>

#include "morvelune/platform/Platform.h"
#include "support/TemporaryDirectory.h"

namespace morvelune::testing {

// What a scripted server answers: a response with a body, or an error. A download with both gives
// its file all the same. A session of a host's own may also give no file.
struct Answer {
  int status = 200;
  std::string body = {};
  std::optional<std::string> suggestedFilename = {};
  std::optional<Error> error = {};
  bool hasFile = true;
  std::size_t fileSize = 0;  // when not 0, a download's file is that long: the body, then zeros
};

// The native files, but for what differs from run to run: unique strings are numbered, and a move
// fails with a text of its own.
class InMemoryFileManager : public FileManager {
 public:
  std::optional<Data> contents(const URL& file) const override { return native_->contents(file); }
  std::optional<Error> moveItem(const URL& from, const URL& to) override {
    std::optional<Error> error = native_->moveItem(from, to);
    if (error) error->localizedDescription = "not moved";
    return error;
  }
  std::string globallyUniqueString() override {
    return "UNIQUE" + std::to_string(++uniqueStrings_);
  }

 private:
  const std::shared_ptr<FileManager> native_ = Platform::native()->fileManager;
  int uniqueStrings_ = 0;
};

// A session whose requests finish when the test says so, on the test's thread, one at a time.
class InMemoryURLSession : public URLSession,
                           public std::enable_shared_from_this<InMemoryURLSession> {
 public:
  std::shared_ptr<URLSessionTask> dataTask(std::optional<URL> url,
                                           DataCompletion completion) override {
    return task(url, [completion = std::move(completion)](const Answer& answer) {
      if (answer.error) return completion({}, {}, answer.error);
      completion(Data::copyOf(answer.body), URLResponse{answer.status, {}}, {});
    });
  }

  std::shared_ptr<URLSessionTask> downloadTask(std::optional<URL> url,
                                               DownloadCompletion completion) override {
    return task(url, [this, completion = std::move(completion)](const Answer& answer) {
      if (answer.error && answer.body.empty()) return completion({}, {}, answer.error);
      const URLResponse response{answer.status, answer.suggestedFilename};
      if (!answer.hasFile) return completion({}, response, {});
      const std::string name = "download" + std::to_string(++downloads_) + ".tmp";
      const std::string path = folder.write(name, answer.body);
      if (answer.fileSize != 0) std::filesystem::resize_file(path, answer.fileSize);
      completion(URL::fileURL(path), response, answer.error);
      std::filesystem::remove(path);
    });
  }

  // What requests for `url` are answered; one that nothing was said about cannot connect.
  void answer(const std::string& url, Answer answer) { answers_[url] = std::move(answer); }

  // Finishes the oldest pending request for `url`; false when there is none.
  bool finish(const std::string& url) {
    const auto isWanted = [&url](const Request& request) { return request.url == url; };
    const auto found = std::find_if(pending_.begin(), pending_.end(), isWanted);
    if (found == pending_.end()) return false;
    const Request next = std::move(*found);
    pending_.erase(found);
    next.complete(answerTo(url));
    return true;
  }
  // Finishes all pending requests in the order in which they were started.
  void finishAll() {
    while (!pending_.empty()) finish(std::string(pending_.front().url));
  }

  // Forgets the pending requests, which keep what waits for them.
  void cancelAll() { pending_.clear(); }

  // Where downloads lie.
  const TemporaryDirectory folder;
  // The URLs of all tasks started, in order; "" for a missing URL.
  std::vector<std::string> started;
  // Called whenever a task is about to be made or started.
  std::function<void()> watch = [] {};

 private:
  struct Request {
    std::string url;
    std::function<void(const Answer&)> complete;
  };

  struct Task : URLSessionTask {
    Task(std::shared_ptr<InMemoryURLSession> from, Request what)
        : session(std::move(from)), request(std::move(what)) {}
    void resume() override {
      if (!request.complete) return;
      session->watch();
      session->started.push_back(request.url);
      session->pending_.push_back(std::exchange(request, {}));
    }
    std::shared_ptr<InMemoryURLSession> session;
    Request request;  // empty once it was started
  };

  std::shared_ptr<URLSessionTask> task(const std::optional<URL>& url,
                                       std::function<void(const Answer&)> complete) {
    watch();
    const Request request{url ? url->absoluteString() : "", std::move(complete)};
    return std::make_shared<Task>(shared_from_this(), request);
  }

  Answer answerTo(const std::string& url) const {
    if (const auto known = answers_.find(url); known != answers_.end()) return known->second;
    return {.error = Error{NSURLErrorDomain, NSURLErrorCannotConnectToHost, "cannot connect"}};
  }

  std::map<std::string, Answer> answers_;
  std::deque<Request> pending_;
  int downloads_ = 0;
};

// Keeps the lines, for one thread at a time.
struct InMemorySystemLog : SystemLog {
  void writeLine(const std::string& line) override { lines.push_back(line); }

  std::vector<std::string> lines;
};

// A device, its screen and its locale in plain fields.
struct InMemoryDevice : Device, Screen, Locale, std::enable_shared_from_this<InMemoryDevice> {
  std::optional<std::string> identifierForVendor() const override { return vendor; }
  std::shared_ptr<const Screen> mainScreen() const override {
    return size ? shared_from_this() : nullptr;
  }
  bool isOperatingSystemAtLeastVersion(const OperatingSystemVersion& version) const override {
    return system >= std::array{version.major, version.minor, version.patch};
  }
  Size bounds() const override { return size.value(); }
  std::optional<Point> fixedOriginInCurrentSpace() const override { return fixedOrigin; }
  std::optional<std::string> countryCode() const override { return country; }
  std::optional<std::vector<std::string>> preferredLanguages() const override { return languages; }
  std::optional<std::string> currencyName(std::string_view locale,
                                          std::string_view code) const override {
    return Platform::native()->locale->currencyName(locale, code);
  }

  std::optional<std::string> vendor;
  std::optional<Size> size;  // of the screen; there is none without it
  std::optional<Point> fixedOrigin;
  std::array<int, 3> system{17, 0, 0};
  std::optional<std::string> country;
  std::optional<std::vector<std::string>> languages;
};

// Installs itself as the process's platform and takes itself back when it goes out of scope. All
// that it does not set is native.
class InMemoryPlatform {
 public:
  InMemoryPlatform() {
    services_->urlSession = network_;
    services_->fileManager = files_;
    services_->device = device_;
    services_->locale = device_;
    services_->systemLog = log_;
    Platform::install(services_);
  }
  ~InMemoryPlatform() {
    Platform::install(nullptr);
    network_->cancelAll();
  }
  InMemoryPlatform(const InMemoryPlatform&) = delete;
  InMemoryPlatform& operator=(const InMemoryPlatform&) = delete;

  InMemoryURLSession& network() { return *network_; }
  InMemoryDevice& device() { return *device_; }
  std::vector<std::string> log() const { return log_->lines; }

 private:
  std::shared_ptr<InMemoryFileManager> files_ = std::make_shared<InMemoryFileManager>();
  std::shared_ptr<InMemoryURLSession> network_ = std::make_shared<InMemoryURLSession>();
  std::shared_ptr<InMemoryDevice> device_ = std::make_shared<InMemoryDevice>();
  std::shared_ptr<InMemorySystemLog> log_ = std::make_shared<InMemorySystemLog>();
  std::shared_ptr<Platform> services_ = std::make_shared<Platform>(*Platform::native());
};

}  // namespace morvelune::testing
